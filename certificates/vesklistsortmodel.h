#pragma once

#include <QSortFilterProxyModel>

/// Sorts a list of the certificates tab: dates as dates, texts character by character. To the source's
/// roles it adds what a screen reader says of a cell, where that is more than its text: the tooltip,
/// which otherwise only the icon of the first column tells, and dates in the form of the locale. Its
/// texts are fit to be shown, as the view's are.
class VeskListSortModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

protected:
    [[nodiscard]] bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    [[nodiscard]] QString accessibleText(const QModelIndex& index) const;
};
