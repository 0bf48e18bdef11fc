#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One item of DER with what is inside it, for tests that change it and write it again. What stands in
/// octet and bit strings is taken apart too where it is DER.
struct DerNode
{
    /// How the length is written.
    enum class Length
    {
        Right,
        Padded,     ///< With needless zeros, which DER forbids.
        Indefinite, ///< BER's form, with an end mark.
        TooShort,
        TooLong,
        Huge
    };

    unsigned char tag = 0;
    std::string content; ///< Without children; of a bit string with them, the unused bits.
    std::vector<DerNode> children; ///< In place of, or behind, the content.
    Length length = Length::Right;

    [[nodiscard]] std::string bytes() const;
    /// This node and all below it.
    void collect(std::vector<DerNode*>& nodes);
};

/// The items that some bytes consist of, wholly; nothing for other bytes.
[[nodiscard]] std::optional<std::vector<DerNode>> parseDer(std::string_view bytes, int depth = 0);
