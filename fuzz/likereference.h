#pragma once

#include <string>
#include <string_view>
#include <vector>

/// A second matcher of the Like operator that shares nothing with the first: it reads the pattern
/// anew at every step and tries every length of every run, so it is only good for short inputs.
class LikeReference
{
public:
    static bool matches(std::string_view pattern, std::string_view text)
    {
        const LikeReference reference{charactersOf(pattern), charactersOf(text)};
        for (std::size_t i = 0; i < reference.m_pattern.size();) {
            const Item item = reference.read(i, "");
            if (!item.isValid) {
                return false;
            }
            i = item.next;
        }
        return reference.match(0, 0);
    }

private:
    using Characters = std::vector<std::string>;

    struct Item
    {
        bool isValid = true;
        bool matches = false;
        std::size_t next = 0;
    };

    static Characters charactersOf(std::string_view text)
    {
        Characters characters;
        while (!text.empty()) {
            const auto lead = static_cast<unsigned char>(text.front());
            std::size_t length = 1;
            for (unsigned bit = 0x20; lead >= 0xC0 && lead < 0xFE && length < 6; bit >>= 1) {
                ++length;
                if ((lead & bit) == 0) {
                    break;
                }
            }
            characters.emplace_back(text.substr(0, length));
            text.remove_prefix(characters.back().size());
        }
        return characters;
    }

    [[nodiscard]] std::string at(std::size_t i) const
    {
        return i < m_pattern.size() ? m_pattern[i] : std::string();
    }

    static bool isRange(const std::string& low, const std::string& high)
    {
        for (const std::string_view kind :
             {"0123456789", "abcdefghijklmnopqrstuvwxyz", "ABCDEFGHIJKLMNOPQRSTUVWXYZ"}) {
            if (low.size() == 1 && high.size() == 1 && kind.find(low) != kind.npos &&
                kind.find(high) != kind.npos) {
                return low <= high;
            }
        }
        return false;
    }

    /// What the item at `i`, which is no run, says to a character.
    [[nodiscard]] Item read(std::size_t i, const std::string& character) const
    {
        if (at(i) == "_" || at(i) == "%") {
            return {true, !character.empty(), i + 1};
        }
        if (at(i) == "[") {
            return readSet(i + 1, character);
        }
        i += at(i) == "\\" ? 1 : 0;
        return {i < m_pattern.size(), at(i) == character, i + 1};
    }

    [[nodiscard]] Item readSet(std::size_t i, const std::string& character) const
    {
        const bool isNegated = at(i) == "^";
        bool isMember = false;
        for (i += isNegated ? 1 : 0; at(i) != "]"; ++i) {
            i += at(i) == "\\" ? 1 : 0;
            const std::string low = at(i);
            std::string high = low;
            if (at(i + 1) == "-" && at(i + 2) != "]") {
                i += at(i + 2) == "\\" ? 3 : 2;
                high = at(i);
                if (!isRange(low, high)) {
                    return {false};
                }
            }
            if (i >= m_pattern.size()) {
                return {false};
            }
            isMember =
                isMember || character == low ||
                (low != high && character.size() == 1 && character >= low && character <= high);
        }
        return {true, !character.empty() && isMember != isNegated, i + 1};
    }

    [[nodiscard]] bool match(std::size_t i, std::size_t j) const
    {
        if (i >= m_pattern.size()) {
            return j >= m_text.size();
        }
        if (at(i) == "%") {
            for (; j <= m_text.size(); ++j) {
                if (match(i + 1, j)) {
                    return true;
                }
            }
            return false;
        }
        const Item item = j < m_text.size() ? read(i, m_text[j]) : Item();
        return item.matches && match(item.next, j + 1);
    }

    LikeReference(Characters pattern, Characters text)
        : m_pattern(std::move(pattern))
        , m_text(std::move(text))
    {
    }

    Characters m_pattern;
    Characters m_text;
};
