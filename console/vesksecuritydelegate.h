#pragma once

#include <QHash>
#include <QIcon>
#include <QStringList>
#include <QStyledItemDelegate>

/// Paints the security column of the endpoint table: a row of small icons, one for each security
/// policy that the endpoint offers, instead of a list of long URIs.
class VeskSecurityDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// policies are the URIs of all policies that can be drawn, in the order in which they are.
    explicit VeskSecurityDelegate(const QStringList& policies, QObject* parent = nullptr);
    ~VeskSecurityDelegate() override;

    /// Draws the icons of the index's policies (a QStringList) in the order of the known ones, each
    /// as large as the option's decoration and 3 pixels apart, from the top left. A policy that isn't
    /// known takes no place; one whose image is missing stays blank.
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

    /// The height of the decoration. The width counts the bits of the index's value as a number,
    /// which a list of URIs doesn't have: it is 0, and the column takes its width from its header.
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;

    /// From the left of one icon of that width to the left of the next.
    [[nodiscard]] static int stepFor(int iconWidth);

private:
    [[nodiscard]] QIcon icon(const QString& policy) const;

    QStringList m_policies;

    // Loading an icon looks for files; a scrolled table paints hundreds.
    mutable QHash<QString, QIcon> m_icons;
};
