#pragma once

#include "platform/datetime.h"
#include "platform/types.h"

#include <string_view>

/// The text form of an array: pieces between "{" and "}", separated by "|", white space around each of
/// them left away. There is always at least one piece, if an empty one. It refers to the text, which
/// must outlive it.
class UaArrayText
{
public:
    /// Looks at a text. `BadOutOfRange` for less than three characters, `BadTypeMismatch` when it
    /// doesn't begin with "{" or hold its last "}" at the very end.
    [[nodiscard]] OpcUa_StatusCode open(std::string_view text);

    /// Number of pieces, 0 before a text was opened.
    [[nodiscard]] OpcUa_Int32 count() const { return m_count; }

    /// Hands the pieces out one after another.
    class Reader
    {
    public:
        explicit Reader(const UaArrayText& text)
            : m_rest(text.m_inner)
        {
        }

        /// The next piece, trimmed; empty when there is none.
        [[nodiscard]] std::string_view next();

    private:
        std::string_view m_rest;
    };

private:
    std::string_view m_inner;
    OpcUa_Int32 m_count = 0;
};

/// Reads a date by OpcUa_DateTime_GetDateTimeFromString, with its status. A text that no date can be
/// as long as, or with a NUL in it, is `BadSyntaxError`; a failure leaves the null time.
[[nodiscard]] OpcUa_StatusCode UaArrayText_ReadDateTime(std::string_view text,
                                                        OpcUa_DateTime& dateTime);
