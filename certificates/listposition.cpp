#include "certificates/listposition.h"

#include <QScrollBar>
#include <QTreeView>

#include <cstdlib>

ListPosition::ListPosition(const QTreeView& view, int fileColumn)
    : m_fileColumn(fileColumn)
    , m_scrollPosition(view.verticalScrollBar()->value())
{
    const QModelIndex current = view.currentIndex();
    if (current.isValid()) {
        m_file = current.siblingAtColumn(fileColumn).data().toString();
        m_row = current.row();
        m_column = current.column();
        m_isSelected = view.selectionModel()->isSelected(current);
        m_isInSight = view.viewport()->rect().intersects(view.visualRect(current));
    }
}

void ListPosition::follow(const QString& newFile)
{
    m_file = newFile;
}

void ListPosition::restore(QTreeView& view) const
{
    if (m_row < 0 && m_scrollPosition == 0) {
        return;
    }
    view.doItemsLayout(); // the scroll bar's range is that of the new rows
    const int row = m_row < 0 ? -1 : findRow(view);
    const QModelIndex current = row < 0 ? QModelIndex() : view.model()->index(row, m_column);
    if (current.isValid()) {
        // This scrolls to the row, which may be far from where the operator looks.
        view.selectionModel()->setCurrentIndex(
            current, m_isSelected ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                                  : QItemSelectionModel::NoUpdate);
    }
    view.verticalScrollBar()->setValue(m_scrollPosition);
    if (m_isInSight) {
        view.scrollTo(current);
    }
}

int ListPosition::findRow(const QTreeView& view) const
{
    const QAbstractItemModel& model = *view.model();
    int found = -1;
    for (int row = 0; row < model.rowCount(); ++row) {
        if (model.index(row, m_fileColumn).data().toString() == m_file &&
            (found < 0 || std::abs(row - m_row) < std::abs(found - m_row))) {
            found = row;
        }
    }
    return found >= 0 ? found : qMin(m_row, model.rowCount() - 1);
}
