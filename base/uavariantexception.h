#pragma once

#include "base/uastring.h"

#include <exception>

/// What the bridge between variants and Windows automation values throws, for every failure alike.
/// Nothing else in this layer throws.
class UaVariantException final : public std::exception
{
public:
    /// Always empty: the type of the exception says all that is known.
    [[nodiscard]] const UaString& message() const noexcept { return m_sMessage; }

    /// The same text.
    [[nodiscard]] const char* what() const noexcept override { return m_sMessage.toUtf8(); }

private:
    UaString m_sMessage;
};
