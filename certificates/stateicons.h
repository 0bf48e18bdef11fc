#pragma once

#include "certificates/validitystate.h"

#include <QIcon>

#include <array>

/// An icon, and the icon with the overlay of each state that wants attention. Each is made once, when
/// it is asked for.
class StateIcons
{
public:
    explicit StateIcons(const QIcon& base);

    [[nodiscard]] const QIcon& icon(ValidityState state) const;

private:
    mutable std::array<QIcon, validityStateCount> m_icons;
};
