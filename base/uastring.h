#pragma once

#include "base/uachar.h"
#include "base/uareferencecount.h"
#include "stack/opcua_string.h"

#include <concepts>
#include <string_view>
#include <type_traits>
#include <utility>

class UaByteArray;
class UaByteString;

/// A text of UTF-8 bytes (String of OPC 10000-6, 5.1.2), as one pointer to a shared block.
///
/// A copy shares the block, costs one atomic increment and may live in another thread; the text in a
/// block never changes, and what "changes" a string gives it another block. All null strings share
/// one block. A null string differs from an empty one by isNull alone: both are empty, of length 0
/// and equal.
///
/// A text is at most MaxLength bytes long and always followed by a NUL; it may hold NULs of its own,
/// which count in its length. A text that is longer, or for which memory is short, becomes the null
/// string. Bytes that are no UTF-8 are kept as they are; where characters matter, UaChar says how they
/// are read. Positions and lengths are in bytes or in characters as each operation tells.
class UaString
{
public:
    /// The longest length that the encoding knows.
    static constexpr OpcUa_Int64 MaxLength = 0x7FFFFFFF;

    /// The null string, without an allocation.
    UaString() noexcept
        : m_pBlock(&s_nullBlock)
    {
    }

    /// Copies a text up to its NUL; a null pointer gives the null string.
    UaString(const char* text); // implicit: a literal is a string
    /// Copies `length` bytes, NULs included; a null pointer or a negative length gives the null string.
    UaString(const char* text, OpcUa_Int64 length);
    /// Copies a stack string, which may be a plain text in its place; null gives null.
    explicit UaString(const OpcUa_String* string);
    /// Copies the bytes as the text, NULs included; null gives null.
    explicit UaString(const UaByteString& bytes);
    /// Converts UTF-16 units up to a 0 unit; see setUtf16.
    explicit UaString(const char16_t* text);

    UaString(const UaString& other) noexcept
        : m_pBlock(other.m_pBlock)
    {
        take();
    }
    UaString(UaString&& other) noexcept
        : m_pBlock(std::exchange(other.m_pBlock, &s_nullBlock))
    {
    }
    UaString& operator=(const UaString& other) noexcept
    {
        UaString(other).swap(*this);
        return *this;
    }
    UaString& operator=(UaString&& other) noexcept
    {
        UaString(std::move(other)).swap(*this);
        return *this;
    }
    ~UaString() { drop(); }

    void swap(UaString& other) noexcept { std::swap(m_pBlock, other.m_pBlock); }

    /// Makes a text of `length` bytes without a copy: `write` is called with the room for them, unless
    /// there is none; then the result is the null string. The NUL behind them is there already.
    template <std::invocable<char*> Writer>
    [[nodiscard]] static UaString compose(OpcUa_Int64 length, Writer&& write)
    {
        UaString text;
        if (char* destination = text.allocate(length); destination != nullptr) {
            std::forward<Writer>(write)(destination);
        }
        return text;
    }

    /// Length in bytes, without the NUL.
    [[nodiscard]] OpcUa_Int32 length() const noexcept
    {
        return static_cast<OpcUa_Int32>(m_pBlock->string.uLength);
    }
    /// Length in characters, by the lead bytes.
    [[nodiscard]] OpcUa_Int32 size() const noexcept;
    /// True for a length of 0, null or not.
    [[nodiscard]] bool isEmpty() const noexcept { return m_pBlock->string.uLength == 0; }
    [[nodiscard]] bool isNull() const noexcept { return m_pBlock->string.strContent == nullptr; }

    /// The text with its NUL, valid as long as a string shares the block. Never null: a null string
    /// gives an empty literal.
    [[nodiscard]] const char* toUtf8() const noexcept
    {
        return isNull() ? "" : m_pBlock->string.strContent;
    }
    /// The same text with its length.
    [[nodiscard]] std::string_view view() const noexcept
    {
        return {toUtf8(), m_pBlock->string.uLength};
    }
    /// The record in the block, for calls into the stack; never null, and valid as toUtf8 is. It must
    /// not be cleared.
    [[nodiscard]] const OpcUa_String* toOpcUaString() const noexcept { return &m_pBlock->string; }

    /// One UTF-16 unit per character, as UaUtf16 tells, in the machine's byte order and closed by a 0
    /// unit, which counts in the array's size. A null string gives an empty array.
    [[nodiscard]] UaByteArray toUtf16() const;
    /// Replaces the text by the UTF-8 form of units up to a 0 unit, one sequence per unit, so that
    /// surrogates pass as three bytes each; a null pointer gives the null string.
    void setUtf16(const char16_t* text);
    /// The same for `length` units, 0 units included; a negative length gives the null string.
    void setUtf16(const char16_t* text, OpcUa_Int64 length);

    /// The text in the character set of the process' locale, closed by a NUL that counts in the size.
    /// What that set doesn't have becomes "?". A null string gives an empty array.
    [[nodiscard]] UaByteArray toLocal8Bit() const;
    /// Reads a text in the character set of the process' locale up to its NUL. Bytes that are none of
    /// its characters become U+FFFD; a null pointer gives the null string.
    [[nodiscard]] static UaString fromLocal8Bit(const char* text);

    /// The character at a position counted in characters; the null character outside the text. Walks
    /// the text from its start: for all characters in a row, use UaChar::decode over view().
    [[nodiscard]] UaChar at(OpcUa_Int32 index) const noexcept;
    /// Bytes before the character at `index`; 0 for a negative index and length() behind the end.
    [[nodiscard]] OpcUa_Int32 byteOffset(OpcUa_Int32 index) const noexcept;
    /// Position, in characters, of the first occurrence of `text` that begins at a character at or
    /// behind `from`; -1 without one and for a null `text`. An empty text is found at `from` up to the
    /// end.
    [[nodiscard]] OpcUa_Int32 find(const UaString& text, OpcUa_Int32 from = 0) const noexcept;
    /// At most `count` characters from the character at `first`, all of the rest for a negative count.
    /// The null string for a position outside the text and of a null string; `first` may be the end.
    [[nodiscard]] UaString substring(OpcUa_Int32 first, OpcUa_Int32 count = -1) const;

    /// Whether the whole text matches a pattern of the Like operator (OPC 10000-4, 7.7.3), character by
    /// character and case sensitive: "%" any run, "_" any character, "[...]" one of a set, "[^...]" one
    /// outside it, "\" takes the next character by its word, in a set too. In a set "a-z" is a range if
    /// both ends are digits, lower case or upper case letters of ASCII, the lower one first; "-" at
    /// either end of a set is itself, and a set without members holds nothing. Any other range, a set
    /// without its "]" and a "\" at the end make the pattern invalid, which matches no text. An empty
    /// or null pattern matches an empty or null text alone. False also when memory is short. Takes at
    /// most time proportional to text times pattern.
    [[nodiscard]] bool like(const UaString& pattern) const noexcept;

    /// The text with every occurrence of the lowest "%n" replaced by a value; "%" and any number of
    /// digits is such a place, with numbers compared by value. Without a place the text stays as it is.
    /// A chain of calls fills "%1", then "%2"; places in an inserted text are filled by later calls.
    ///
    /// `fieldWidth` is the least width in characters, padded with `fill` on the left, or on the right
    /// for a negative width. The null string stays null.
    [[nodiscard]] UaString arg(const UaString& value, OpcUa_Int32 fieldWidth = 0,
                               UaChar fill = ' ') const;
    /// Inserts an integer in a base of 2 to 36 with upper case digits, a negative one with a "-" before
    /// them in any base; any other base counts as 10.
    template <std::integral Integer>
    [[nodiscard]] UaString arg(Integer value, OpcUa_Int32 fieldWidth = 0, OpcUa_Int32 base = 10,
                               UaChar fill = ' ') const
    {
        if constexpr (std::is_signed_v<Integer>) {
            return argSigned(value, fieldWidth, base, fill);
        } else {
            return argUnsigned(value, fieldWidth, base, fill);
        }
    }
    /// Inserts a number as printf writes it with the format "f", "e" or "g" (also in upper case, and
    /// "g" for any other) and a precision, 6 for a negative one; the decimal point is always ".". No
    /// more than 1100 decimals are written: no number has more.
    template <std::floating_point Floating>
    [[nodiscard]] UaString arg(Floating value, OpcUa_Int32 fieldWidth = 0, char format = 'g',
                               OpcUa_Int32 precision = -1, UaChar fill = ' ') const
    {
        return argDouble(static_cast<OpcUa_Double>(value), fieldWidth, format, precision, fill);
    }

    /// Deep copy for the caller to clear; null gives null. What the destination held is cleared.
    /// `BadInvalidArgument` for a null pointer, `BadOutOfMemory`; the destination is null then.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_String* destination) const;
    /// Hands the text over and leaves this string null. A long text that isn't shared moves, any other
    /// is copied. Failures are those of copyTo, and this string keeps its text then.
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_String* destination);

    /// Appends; the result is null only if both are. When the sum is too long or memory is short, this
    /// string becomes null.
    UaString& operator+=(const UaString& other) noexcept;
    UaString& operator+=(const char* text) noexcept;
    friend UaString operator+(const UaString& left, const UaString& right) noexcept;
    friend UaString operator+(const UaString& left, const char* right) noexcept;
    friend UaString operator+(const char* left, const UaString& right) noexcept;

    /// Equal length and bytes.
    friend bool operator==(const UaString& left, const UaString& right) noexcept
    {
        return left.m_pBlock == right.m_pBlock || left.view() == right.view();
    }
    friend bool operator==(const UaString& left, const char* right) noexcept
    {
        return left.view() == (right == nullptr ? std::string_view() : std::string_view(right));
    }
    /// Deliberately no lexical order: a string of less bytes comes first whatever it holds ("z" before
    /// "ab"). Equal lengths are ordered by OpcUa_String_StrnCmp, for which an embedded NUL ends the
    /// text and null comes before empty.
    friend bool operator<(const UaString& left, const UaString& right) noexcept;

private:
    /// A text of up to so many bytes stands in the block itself, which saves an allocation; a longer one has its
    /// own, so that detach can move it.
    static constexpr OpcUa_Int64 InlineLimit = 512;

    struct Block
    {
        OpcUa_String string = {};
        UaReferenceCount count;
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
    char* allocate(OpcUa_Int64 length) noexcept;
    static UaString join(std::string_view left, std::string_view right) noexcept;
    [[nodiscard]] UaString argText(std::string_view value, OpcUa_Int64 characters,
                                   OpcUa_Int32 fieldWidth, UaChar fill) const;
    [[nodiscard]] UaString argSigned(OpcUa_Int64 value, OpcUa_Int32 fieldWidth, OpcUa_Int32 base,
                                     UaChar fill) const;
    [[nodiscard]] UaString argUnsigned(OpcUa_UInt64 value, OpcUa_Int32 fieldWidth, OpcUa_Int32 base,
                                       UaChar fill) const;
    [[nodiscard]] UaString argDouble(OpcUa_Double value, OpcUa_Int32 fieldWidth, char format,
                                     OpcUa_Int32 precision, UaChar fill) const;

    static Block s_nullBlock;

    Block* m_pBlock;
};
