#pragma once

#include "base/uaunistring.h"

#include <array>
#include <climits>
#include <string_view>

// Names of files between the engine's 16-bit units and the system's bytes; see UaFileEngine for the
// rules. Not for users of the layer.

/// A path as the system takes it.
class NativePath
{
public:
    /// A path with a 0 unit inside, or one that is too long, becomes empty: there is no such file.
    explicit NativePath(const UaUniString& path) noexcept;

    [[nodiscard]] const char* c_str() const noexcept { return m_text.data(); }
    [[nodiscard]] std::string_view view() const noexcept { return {m_text.data(), m_length}; }
    /// False for one that isn't representable, not for one that was empty.
    [[nodiscard]] bool isValid() const noexcept { return m_isValid; }

private:
    bool append(char32_t character) noexcept;

    std::size_t m_length = 0;
    bool m_isValid = true;
    std::array<char, PATH_MAX> m_text;
};

/// Units that the system's bytes give.
[[nodiscard]] UaUniString fromNativePath(std::string_view bytes) noexcept;

/// `prefix`, "/" and the name from the system's bytes, made in one block.
[[nodiscard]] UaUniString joinNativeName(const UaUniString& prefix, std::string_view name) noexcept;
