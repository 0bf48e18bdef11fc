#include "widgets/formscrollarea.h"

#include <QEvent>
#include <QScrollBar>

FormScrollArea::FormScrollArea(QWidget* parent)
    : QScrollArea(parent)
{
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

QSize FormScrollArea::sizeHint() const
{
    if (!widget()) {
        return QScrollArea::sizeHint();
    }
    const QSize content = widget()->sizeHint();
    return {widthFor(content.width()), content.height() + 2 * frameWidth()};
}

QSize FormScrollArea::minimumSizeHint() const
{
    const QSize minimum = QScrollArea::minimumSizeHint();
    return widget() ? QSize(widthFor(widget()->minimumSizeHint().width()), minimum.height())
                    : minimum;
}

bool FormScrollArea::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == widget() && event->type() == QEvent::LayoutRequest) {
        updateGeometry();
    }
    return QScrollArea::eventFilter(watched, event);
}

void FormScrollArea::showEvent(QShowEvent* event)
{
    // Taking a widget in makes it fill its background.
    viewport()->setAutoFillBackground(false);
    if (widget()) {
        widget()->setAutoFillBackground(false);
    }
    QScrollArea::showEvent(event);
}

int FormScrollArea::widthFor(int contentWidth) const
{
    // The place of the scroll bar is kept, so that the content doesn't move when it comes.
    return contentWidth + verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
}
