#include "console/endpointtable.h"

#include "console/securitypolicies.h"
#include "console/vesksecuritydelegate.h"
#include "console/veskserverconfigmodel.h"

#include <QHeaderView>
#include <QStyle>

namespace {

/// How many rows are measured for the width of a column.
constexpr int measuredRows = 100;

constexpr int minimumUrlCharacters = 14;

/// Of a table whose own width isn't settled yet.
constexpr int maximumUrlCharacters = 60;

} // namespace

EndpointTable::EndpointTable(QWidget* parent)
    : QTreeView(parent)
{
    header()->setResizeContentsPrecision(measuredRows);
}

void EndpointTable::resizeColumnsToContents()
{
    if (!model()) {
        return;
    }
    // The number of the last row is the widest, and all rows have the same width of icons.
    header()->setResizeContentsPrecision(1);
    resizeColumnToContents(VeskServerConfigModel::NumberColumn);
    resizeColumnToContents(VeskServerConfigModel::SecurityColumn);
    const QModelIndex last =
        model()->index(model()->rowCount() - 1, VeskServerConfigModel::NumberColumn);
    const int lastWidth = sizeHintForIndex(last).width();
    if (lastWidth > columnWidth(VeskServerConfigModel::NumberColumn)) {
        setColumnWidth(VeskServerConfigModel::NumberColumn, lastWidth);
    }
    header()->setResizeContentsPrecision(measuredRows);
    resizeColumnToContents(VeskServerConfigModel::ProtocolColumn);
    fitUrlColumn();
}

void EndpointTable::resizeEvent(QResizeEvent* event)
{
    QTreeView::resizeEvent(event);
    fitUrlColumn();
}

void EndpointTable::showEvent(QShowEvent* event)
{
    QTreeView::showEvent(event);
    fitUrlColumn();
}

void EndpointTable::fitUrlColumn()
{
    if (!model()) {
        return;
    }
    resizeColumnToContents(VeskServerConfigModel::UrlColumn);
    const int room = roomForUrl();
    if (columnWidth(VeskServerConfigModel::UrlColumn) > room) {
        setColumnWidth(VeskServerConfigModel::UrlColumn, room);
    }
}

int EndpointTable::roomForUrl() const
{
    const int character = fontMetrics().averageCharWidth();
    if (!isVisible()) {
        return maximumUrlCharacters * character;
    }
    const int iconWidth = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    const int iconsWidth =
        static_cast<int>(SecurityPolicies::known.size()) * VeskSecurityDelegate::stepFor(iconWidth);
    const int securityWidth =
        qMax(header()->sectionSizeHint(VeskServerConfigModel::SecurityColumn), iconsWidth);
    const int others = columnWidth(VeskServerConfigModel::NumberColumn) +
                       columnWidth(VeskServerConfigModel::ProtocolColumn) + securityWidth;
    return qMax(minimumUrlCharacters * character, viewport()->width() - others);
}
