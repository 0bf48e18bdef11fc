#pragma once

#include "base/uastring.h"

#include <string>

/// The bytes of a string for comparing and printing; "(null)" for the null string, which compares
/// equal to an empty one by itself.
inline std::string textOf(const UaString& text)
{
    return text.isNull() ? std::string("(null)") : std::string(text.view());
}
