#pragma once

#include "base/uadatetime.h"

#include <QAbstractItemModel>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

/// A list whose dates can be compared without making a QVariant of them.
class VeskSortableModel : public QAbstractItemModel
{
public:
    using QAbstractItemModel::QAbstractItemModel;

    /// The date in a cell; nothing in a column without dates.
    [[nodiscard]] virtual std::optional<UaDateTime> dateAt(const QModelIndex& index) const = 0;
};

/// What the lists of the certificates tab have in common: rows that are direct children of an
/// invisible root item and have no children of their own.
///
/// An item has the members `pParent` and `children`, owns its children and can be made by default. An
/// index points to its item.
template <typename Item>
class VeskListModel : public VeskSortableModel
{
public:
    using VeskSortableModel::VeskSortableModel;

    [[nodiscard]] QModelIndex index(int row, int column,
                                    const QModelIndex& parent = QModelIndex()) const override
    {
        return hasIndex(row, column, parent)
                   ? createIndex(row, column, itemAt(parent)->children.at(row))
                   : QModelIndex();
    }

    [[nodiscard]] QModelIndex parent(const QModelIndex& /*child*/) const override { return {}; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return static_cast<int>(itemAt(parent)->children.size());
    }

    [[nodiscard]] bool hasChildren(const QModelIndex& parent = QModelIndex()) const override
    {
        return !parent.isValid() || !itemAt(parent)->children.isEmpty();
    }

    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled : Qt::NoItemFlags;
    }

    /// Removes all rows. An empty model signals nothing.
    void clear()
    {
        if (m_root.children.isEmpty()) {
            return;
        }
        beginRemoveRows(QModelIndex(), 0, rowCount() - 1);
        qDeleteAll(m_root.children);
        m_root.children.clear();
        endRemoveRows();
    }

protected:
    [[nodiscard]] const Item* itemAt(const QModelIndex& index) const
    {
        return index.isValid() ? static_cast<const Item*>(index.constInternalPointer()) : &m_root;
    }

    [[nodiscard]] const QList<Item*>& items() const { return m_root.children; }

    /// Takes the items as the last rows, with one signal for all of them.
    void append(std::vector<std::unique_ptr<Item>> items)
    {
        if (items.empty()) {
            return;
        }
        const int first = rowCount();
        beginInsertRows(QModelIndex(), first, first + static_cast<int>(items.size()) - 1);
        m_root.children.reserve(first + static_cast<qsizetype>(items.size()));
        for (std::unique_ptr<Item>& item : items) {
            item->pParent = &m_root;
            m_root.children.append(item.release());
        }
        endInsertRows();
    }

private:
    Item m_root;
};
