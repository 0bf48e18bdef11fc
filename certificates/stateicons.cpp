#include "certificates/stateicons.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>

namespace {

constexpr QSize pictureSize(64, 64);

QString overlayPath(ValidityState state)
{
    return state == ValidityState::ExpiresSoon
               ? QStringLiteral(":/veskwidgets/images/overlay_warning.png")
               : QStringLiteral(":/veskwidgets/images/overlay_error.png");
}

QImage pictureOf(const QIcon& icon)
{
    const QImage picture = icon.pixmap(pictureSize).toImage();
    if (!picture.isNull()) {
        return picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
    QImage empty(pictureSize, QImage::Format_ARGB32_Premultiplied);
    empty.fill(Qt::transparent);
    return empty;
}

QIcon withOverlay(const QIcon& base, const QImage& overlay)
{
    QImage picture = pictureOf(base);
    const QSizeF size = picture.deviceIndependentSize();
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(QRectF(QPointF(0, 0), size), overlay, overlay.rect());
    painter.end();
    return QIcon(QPixmap::fromImage(picture));
}

} // namespace

StateIcons::StateIcons(const QIcon& base)
{
    m_icons[0] = base;
}

StateIcons::StateIcons(const QString& path)
    : m_path(path)
{
}

const QIcon& StateIcons::base() const
{
    QIcon& icon = m_icons[0];
    if (icon.isNull() && !m_path.isEmpty()) {
        icon = QIcon(m_path);
    }
    return icon;
}

const QIcon& StateIcons::icon(ValidityState state) const
{
    if (state == ValidityState::Healthy) {
        return base();
    }
    QIcon& icon = m_icons[static_cast<std::size_t>(state)];
    if (icon.isNull()) {
        icon = withOverlay(base(), QImage(overlayPath(state)));
    }
    return icon;
}
