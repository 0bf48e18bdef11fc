#include "base/numbertext.h"
#include "base/uastring.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

/// One "%" with its digits in a text.
struct Place
{
    std::string_view text;
    std::string_view
        number; ///< The digits without leading zeros, so that any length compares by value.

    [[nodiscard]] bool isLowerThan(const Place& other) const
    {
        return number.size() != other.number.size() ? number.size() < other.number.size()
                                                    : number < other.number;
    }
};

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// The first place in a text; an empty one without any.
Place findPlace(std::string_view text)
{
    for (std::size_t i = text.find('%'); i != std::string_view::npos; i = text.find('%', i + 1)) {
        std::size_t end = i + 1;
        while (end < text.size() && isDigit(text[end])) {
            ++end;
        }
        if (end > i + 1) {
            std::string_view number = text.substr(i + 1, end - i - 1);
            number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
            return {text.substr(i, end - i), number};
        }
    }
    return {};
}

std::string_view behind(std::string_view text, const Place& place)
{
    return text.substr(static_cast<std::size_t>(place.text.data() - text.data()) +
                       place.text.size());
}

/// What stands in place of the lowest number of a text, and how often and how wide that number is.
struct Filling
{
    Place lowest;
    OpcUa_Int64 count = 0;
    OpcUa_Int64 replacedBytes = 0;
};

Filling findLowest(std::string_view text)
{
    Filling filling;
    for (Place place = findPlace(text); !place.text.empty();
         text = behind(text, place), place = findPlace(text)) {
        if (filling.count == 0 || place.isLowerThan(filling.lowest)) {
            filling = {place, 0, 0};
        }
        if (place.number == filling.lowest.number) {
            ++filling.count;
            filling.replacedBytes += static_cast<OpcUa_Int64>(place.text.size());
        }
    }
    return filling;
}

/// A value with its padding.
struct Insertion
{
    std::string_view value;
    std::array<char, UaChar::MaxUtf8Length> fill;
    OpcUa_Int64 fillLength;
    OpcUa_Int64 fillCount;
    bool isFillFirst;

    Insertion(std::string_view text, OpcUa_Int64 characters, OpcUa_Int32 fieldWidth,
              UaChar character)
        : value(text)
        , fill{}
        , fillLength(static_cast<OpcUa_Int64>(character.toUtf8(fill.data())))
        , fillCount(std::max<OpcUa_Int64>(
              0,
              (fieldWidth < 0 ? -OpcUa_Int64{fieldWidth} : OpcUa_Int64{fieldWidth}) - characters))
        , isFillFirst(fieldWidth > 0)
    {
    }

    [[nodiscard]] OpcUa_Int64 length() const
    {
        return static_cast<OpcUa_Int64>(value.size()) + fillCount * fillLength;
    }

    [[nodiscard]] char* writeFill(char* destination) const
    {
        for (OpcUa_Int64 i = 0; i < fillCount; ++i) {
            destination = std::copy_n(fill.data(), fillLength, destination);
        }
        return destination;
    }

    [[nodiscard]] char* write(char* destination) const
    {
        if (isFillFirst) {
            destination = writeFill(destination);
        }
        destination = std::copy(value.begin(), value.end(), destination);
        return isFillFirst ? destination : writeFill(destination);
    }
};

void writeFilled(std::string_view text, const Place& lowest, const Insertion& insertion,
                 char* destination)
{
    for (Place place = findPlace(text); !place.text.empty();
         text = behind(text, place), place = findPlace(text)) {
        const bool isReplaced = place.number == lowest.number;
        const char* end = place.text.data() + (isReplaced ? 0 : place.text.size());
        destination = std::copy(text.data(), end, destination);
        if (isReplaced) {
            destination = insertion.write(destination);
        }
    }
    std::copy(text.begin(), text.end(), destination);
}

} // namespace

UaString UaString::argText(std::string_view value, OpcUa_Int64 characters, OpcUa_Int32 fieldWidth,
                           UaChar fill) const
{
    const Filling filling = findLowest(view());
    if (filling.count == 0) {
        return *this;
    }
    const Insertion insertion(value, characters, fieldWidth, fill);
    // Checked by itself first, so that the product can't overflow.
    if (insertion.length() > MaxLength) {
        return {};
    }
    const OpcUa_Int64 sum =
        OpcUa_Int64{length()} - filling.replacedBytes + filling.count * insertion.length();
    return compose(sum, [this, &filling, &insertion](char* text) {
        writeFilled(view(), filling.lowest, insertion, text);
    });
}

UaString UaString::arg(const UaString& value, OpcUa_Int32 fieldWidth, UaChar fill) const
{
    return argText(value.view(), value.size(), fieldWidth, fill);
}

UaString UaString::argSigned(OpcUa_Int64 value, OpcUa_Int32 fieldWidth, OpcUa_Int32 base,
                             UaChar fill) const
{
    UaNumberText::IntegerBuffer buffer;
    const std::string_view digits = UaNumberText::format(buffer, value, base);
    return argText(digits, static_cast<OpcUa_Int64>(digits.size()), fieldWidth, fill);
}

UaString UaString::argUnsigned(OpcUa_UInt64 value, OpcUa_Int32 fieldWidth, OpcUa_Int32 base,
                               UaChar fill) const
{
    UaNumberText::IntegerBuffer buffer;
    const std::string_view digits = UaNumberText::format(buffer, value, base);
    return argText(digits, static_cast<OpcUa_Int64>(digits.size()), fieldWidth, fill);
}

UaString UaString::argDouble(OpcUa_Double value, OpcUa_Int32 fieldWidth, char format,
                             OpcUa_Int32 precision, UaChar fill) const
{
    UaNumberText::DoubleBuffer buffer;
    const std::string_view digits = UaNumberText::format(buffer, value, format, precision);
    return argText(digits, static_cast<OpcUa_Int64>(digits.size()), fieldWidth, fill);
}
