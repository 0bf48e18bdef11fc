#pragma once

#include <QStyledItemDelegate>

/// Shows the URL column of the endpoint table. A URL of absurd length is cut before it is laid out,
/// and one that doesn't fit its cell stands whole in the cell's tooltip.
class EndpointUrlDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QString displayText(const QVariant& value, const QLocale& locale) const override;

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
};
