#pragma once

#include <QLabel>

/// A label for one line of plain text that may be longer than its place: it shows the text with an
/// ellipsis in the middle and asks for no more width than a few characters. text() is always whole.
/// While the text is elided, the tooltip shows it below the label's own tooltip.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QString elidedText() const;
    [[nodiscard]] QSize sizeForWidth(int textWidth) const;
};
