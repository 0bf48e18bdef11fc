#include "certificates/vesklistsortmodel.h"

#include "certificates/vesklistdelegate.h"
#include "certificates/vesklistmodel.h"

#include <QLocale>

QVariant VeskListSortModel::data(const QModelIndex& index, int role) const
{
    return role == Qt::AccessibleTextRole && index.isValid()
               ? accessibleText(index)
               : QSortFilterProxyModel::data(index, role);
}

QString VeskListSortModel::accessibleText(const QModelIndex& index) const
{
    const QString text = textForCell(data(index, Qt::DisplayRole), QLocale());
    const QString state = index.column() == 0 ? data(index, Qt::ToolTipRole).toString() : QString();
    return state.isEmpty() ? text : tr("%1, %2").arg(text, state);
}

bool VeskListSortModel::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const auto* source = static_cast<const VeskSortableModel*>(sourceModel());
    if (const std::optional<UaDateTime> date = source->dateAt(left)) {
        return *date < *source->dateAt(right);
    }
    return QSortFilterProxyModel::lessThan(left, right);
}
