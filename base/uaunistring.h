#pragma once

#include "base/uareferencecount.h"
#include "base/uastring.h"

#include <concepts>
#include <string_view>
#include <utility>

class UaUniStringList;

/// A text of 16-bit units for searching, cutting and reading numbers, as one pointer to a shared
/// block: every position is one unit, and a character never takes more than one.
///
/// A copy shares the block, costs one atomic increment and may live in another thread; the text in a
/// block never changes. All null strings share one block; a null string is empty and equal to an
/// empty one. A text has at most MaxLength units and is always followed by a 0 unit; it may hold such
/// units of its own. A text that is longer, or for which memory is short, becomes the null string.
class UaUniString
{
public:
    static constexpr OpcUa_Int64 MaxLength = 0x3FFFFFFF;

    /// The null string, without an allocation.
    UaUniString() noexcept
        : m_pBlock(&s_nullBlock)
    {
    }
    /// Converts UTF-8 up to a NUL, one unit per character as UaUtf16 tells; null gives null.
    UaUniString(const char* text); // implicit: a literal is a string
    explicit UaUniString(const UaString& text);
    /// Copies units up to a 0 unit; null gives null.
    UaUniString(const char16_t* text); // implicit: a literal is a string
    /// Copies `length` units, 0 units included; a null pointer or a negative length gives null.
    UaUniString(const char16_t* text, OpcUa_Int64 length) noexcept;

    UaUniString(const UaUniString& other) noexcept
        : m_pBlock(other.m_pBlock)
    {
        take();
    }
    UaUniString(UaUniString&& other) noexcept
        : m_pBlock(std::exchange(other.m_pBlock, &s_nullBlock))
    {
    }
    UaUniString& operator=(const UaUniString& other) noexcept
    {
        UaUniString(other).swap(*this);
        return *this;
    }
    UaUniString& operator=(UaUniString&& other) noexcept
    {
        UaUniString(std::move(other)).swap(*this);
        return *this;
    }
    ~UaUniString() { drop(); }

    void swap(UaUniString& other) noexcept { std::swap(m_pBlock, other.m_pBlock); }

    /// Makes a text of `length` units without a copy: `write` is called with the room for them, unless
    /// there is none; then the result is the null string. The 0 unit behind them is there already.
    template <std::invocable<char16_t*> Writer>
    [[nodiscard]] static UaUniString compose(OpcUa_Int64 length, Writer&& write)
    {
        UaUniString text;
        if (char16_t* units = text.allocate(length); units != nullptr) {
            std::forward<Writer>(write)(units);
        }
        return text;
    }

    /// Length in units, without the closing one.
    [[nodiscard]] OpcUa_Int32 length() const noexcept { return m_pBlock->length; }
    /// True for a length of 0, null or not.
    [[nodiscard]] bool isEmpty() const noexcept { return m_pBlock->length == 0; }
    [[nodiscard]] bool isNull() const noexcept { return m_pBlock == &s_nullBlock; }
    /// The unit at a position, 0 outside.
    [[nodiscard]] char16_t at(OpcUa_Int32 index) const noexcept
    {
        return index >= 0 && index < m_pBlock->length ? utf16()[index] : u'\0';
    }

    /// The units with a 0 unit behind them, valid as long as a string shares the block; never null.
    [[nodiscard]] const char16_t* utf16() const noexcept
    {
        return isNull() ? u"" : reinterpret_cast<const char16_t*>(m_pBlock + 1);
    }
    /// The same units with their length.
    [[nodiscard]] std::u16string_view view() const noexcept
    {
        return {utf16(), static_cast<std::size_t>(m_pBlock->length)};
    }
    /// The UTF-8 form, one sequence per unit, so that surrogates pass as three bytes each; null gives
    /// null.
    [[nodiscard]] UaString toUaString() const noexcept;

    /// Position of the first occurrence that begins at or behind `from`, -1 without one. A negative
    /// `from` counts as 0; an empty text is found at `from` up to the end.
    [[nodiscard]] OpcUa_Int32 indexOf(const UaUniString& text, OpcUa_Int32 from = 0) const noexcept;
    [[nodiscard]] OpcUa_Int32 indexOf(char16_t unit, OpcUa_Int32 from = 0) const noexcept;
    /// Position of the last occurrence that begins at or before `from`, the end for a negative one; -1
    /// without one.
    [[nodiscard]] OpcUa_Int32 lastIndexOf(const UaUniString& text,
                                          OpcUa_Int32 from = -1) const noexcept;
    [[nodiscard]] OpcUa_Int32 lastIndexOf(char16_t unit, OpcUa_Int32 from = -1) const noexcept;
    [[nodiscard]] bool contains(const UaUniString& text) const noexcept
    {
        return indexOf(text) >= 0;
    }
    [[nodiscard]] bool contains(char16_t unit) const noexcept { return indexOf(unit) >= 0; }
    [[nodiscard]] bool startsWith(const UaUniString& text) const noexcept;
    [[nodiscard]] bool endsWith(const UaUniString& text) const noexcept;

    /// At most `count` units from `first`, all of the rest for a negative count. The null string for a
    /// position outside the text and of a null string; `first` may be the end.
    [[nodiscard]] UaUniString mid(OpcUa_Int32 first, OpcUa_Int32 count = -1) const;
    /// The first or last `count` units, none for a negative count; null gives null.
    [[nodiscard]] UaUniString left(OpcUa_Int32 count) const;
    [[nodiscard]] UaUniString right(OpcUa_Int32 count) const;
    /// Without the white space (UaChar::isSpace) at both ends; null gives null.
    [[nodiscard]] UaUniString trimmed() const;
    /// With one unit in place of another throughout; null gives null.
    [[nodiscard]] UaUniString replaced(char16_t before, char16_t after) const;
    /// What lies between the separators, empty pieces included: one piece more than separators. A null
    /// string has no pieces, an empty one has one. Empty also when memory is short.
    [[nodiscard]] UaUniStringList split(char16_t separator) const noexcept;

    /// Reads a whole number in a base of 2 to 36: white space at both ends, a "+" or, for a signed
    /// type, a "-", and digits in either case. 0 and false in `*pbOk` for any other text or base, or a
    /// number outside the type's range; `pbOk` may be null.
    [[nodiscard]] OpcUa_Int32 toInt32(bool* pbOk = nullptr, OpcUa_Int32 base = 10) const noexcept;
    [[nodiscard]] OpcUa_UInt32 toUInt32(bool* pbOk = nullptr, OpcUa_Int32 base = 10) const noexcept;
    [[nodiscard]] OpcUa_Int64 toInt64(bool* pbOk = nullptr, OpcUa_Int32 base = 10) const noexcept;
    [[nodiscard]] OpcUa_UInt64 toUInt64(bool* pbOk = nullptr, OpcUa_Int32 base = 10) const noexcept;
    /// Reads a decimal number with or without fraction and exponent, "inf" or "nan", with white space
    /// at both ends and a sign; the decimal point is always ".". 0 and false in `*pbOk` for any other
    /// text, a number that a Double can't hold, or when memory is short.
    [[nodiscard]] OpcUa_Double toDouble(bool* pbOk = nullptr) const;

    /// The text of a number, with the rules of UaString::arg.
    template <std::integral Integer>
    [[nodiscard]] static UaUniString number(Integer value, OpcUa_Int32 base = 10)
    {
        if constexpr (std::is_signed_v<Integer>) {
            return numberSigned(value, base);
        } else {
            return numberUnsigned(value, base);
        }
    }
    [[nodiscard]] static UaUniString number(OpcUa_Double value, char format = 'g',
                                            OpcUa_Int32 precision = -1);

    /// Appends; the result is null only if both are. When the sum is too long or memory is short, this
    /// string becomes null.
    UaUniString& operator+=(const UaUniString& other) noexcept;
    friend UaUniString operator+(const UaUniString& left, const UaUniString& right) noexcept;

    friend bool operator==(const UaUniString& left, const UaUniString& right) noexcept
    {
        return left.m_pBlock == right.m_pBlock || left.view() == right.view();
    }
    /// The lexical order of the units.
    friend bool operator<(const UaUniString& left, const UaUniString& right) noexcept
    {
        return left.view() < right.view();
    }

private:
    /// The units stand behind it in the same allocation.
    struct Block
    {
        UaReferenceCount count;
        OpcUa_Int32 length = 0;
    };

    void take() const noexcept
    {
        // The null block isn't counted: it is never freed, and threads needn't contend over it.
        if (m_pBlock != &s_nullBlock) {
            m_pBlock->count.take();
        }
    }
    void drop() noexcept
    {
        if (m_pBlock != &s_nullBlock && m_pBlock->count.drop()) {
            destroy(m_pBlock);
        }
    }
    static void destroy(Block* block) noexcept;
    char16_t* allocate(OpcUa_Int64 length) noexcept;
    [[nodiscard]] static UaUniString fromUtf8(std::string_view text);
    [[nodiscard]] static std::u16string_view trim(std::u16string_view text) noexcept;
    [[nodiscard]] UaUniString piece(std::u16string_view part) const;
    static UaUniString numberSigned(OpcUa_Int64 value, OpcUa_Int32 base);
    static UaUniString numberUnsigned(OpcUa_UInt64 value, OpcUa_Int32 base);

    static Block s_nullBlock;

    Block* m_pBlock;
};
