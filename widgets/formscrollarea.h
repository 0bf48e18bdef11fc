#pragma once

#include <QScrollArea>

/// A scroll area for a part of a form: never narrower than its content, so that it only ever scrolls
/// up and down, and as high as there is room. It shows the background of what it lies on.
class FormScrollArea : public QScrollArea
{
    Q_OBJECT

public:
    explicit FormScrollArea(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    [[nodiscard]] int widthFor(int contentWidth) const;
};
