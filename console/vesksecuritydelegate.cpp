#include "console/vesksecuritydelegate.h"

#include "console/securitypolicies.h"

#include <QPainter>

namespace {

constexpr int iconGap = 3;

} // namespace

VeskSecurityDelegate::VeskSecurityDelegate(const QStringList& policies, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_policies(policies)
{
}

VeskSecurityDelegate::~VeskSecurityDelegate() = default;

void VeskSecurityDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const
{
    const QStringList policies = index.data().toStringList();
    painter->save();
    if (option.state.testFlag(QStyle::State_Selected)) {
        painter->fillRect(option.rect, option.palette.brush(option.palette.currentColorGroup(),
                                                            QPalette::Highlight));
    }
    painter->setRenderHint(QPainter::Antialiasing);

    QRect target(option.rect.topLeft(), option.decorationSize);
    for (const QString& policy : m_policies) {
        if (!policies.contains(policy)) {
            continue;
        }
        const QPixmap pixmap = icon(policy).pixmap(option.decorationSize);
        painter->drawPixmap(target, pixmap, pixmap.rect());
        target.translate(stepFor(option.decorationSize.width()), 0);
    }
    painter->restore();
}

QSize VeskSecurityDelegate::sizeHint(const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const
{
    int count = 0;
    for (int bits = index.data().toInt(); bits > 0; bits >>= 1) {
        count += bits & 1;
    }
    return {stepFor(option.decorationSize.width()) * count, option.decorationSize.height()};
}

int VeskSecurityDelegate::stepFor(int iconWidth)
{
    return iconWidth + iconGap;
}

QIcon VeskSecurityDelegate::icon(const QString& policy) const
{
    auto found = m_icons.find(policy);
    if (found == m_icons.end()) {
        const QString path = QStringLiteral(":/veskwidgets/images/encr_%1.png")
                                 .arg(SecurityPolicies::name(policy).toLower());
        found = m_icons.insert(policy, QIcon(path));
    }
    return *found;
}
