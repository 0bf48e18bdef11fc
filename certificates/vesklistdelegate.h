#pragma once

#include <QStyledItemDelegate>

/// What a cell shows: dates in the locale's short form, texts as one line in which nothing can mislead
/// or slow down, see lineForDisplay.
[[nodiscard]] QString textForCell(const QVariant& value, const QLocale& locale);

/// Shows the cells of the certificates tab's lists by textForCell.
class VeskListDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QString displayText(const QVariant& value, const QLocale& locale) const override;
};
