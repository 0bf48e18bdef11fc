#pragma once

#include "certificates/validitystate.h"

#include <QIcon>
#include <QString>

#include <array>

/// An icon, and the icon with the overlay of each state that wants attention. Each is made once, when
/// it is asked for.
class StateIcons
{
public:
    explicit StateIcons(const QIcon& base);
    /// The icon of a file, which is read when an icon is asked for.
    explicit StateIcons(const QString& path);

    [[nodiscard]] const QIcon& icon(ValidityState state) const;

private:
    [[nodiscard]] const QIcon& base() const;

    QString m_path; ///< Empty when the icon itself was given.
    mutable std::array<QIcon, validityStateCount> m_icons;
};
