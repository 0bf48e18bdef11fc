#include "widgets/elidedlabel.h"

#include "widgets/displaytext.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace {

constexpr int minimumCharacters = 12;
constexpr int preferredCharacters = 40;

} // namespace

ElidedLabel::ElidedLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::sizeHint() const
{
    const int whole = fontMetrics().horizontalAdvance(cutForDisplay(text()));
    return sizeForWidth(qMin(whole, preferredCharacters * fontMetrics().averageCharWidth()));
}

QSize ElidedLabel::minimumSizeHint() const
{
    return sizeForWidth(minimumCharacters * fontMetrics().averageCharWidth());
}

bool ElidedLabel::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && elidedText() != text()) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const QString own = toolTip().isEmpty() ? QString() : plainToolTip(toolTip());
        QToolTip::showText(help->globalPos(), own + plainToolTip(text()), this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    drawFrame(&painter);
    style()->drawItemText(&painter, contentsRect(),
                          QStyle::visualAlignment(layoutDirection(), alignment()), palette(),
                          isEnabled(), elidedText(), foregroundRole());
}

QString ElidedLabel::elidedText() const
{
    return fontMetrics().elidedText(cutForDisplay(text()), Qt::ElideMiddle, contentsRect().width());
}

QSize ElidedLabel::sizeForWidth(int textWidth) const
{
    const QMargins margins = contentsMargins();
    return {textWidth + margins.left() + margins.right(),
            fontMetrics().height() + margins.top() + margins.bottom()};
}
