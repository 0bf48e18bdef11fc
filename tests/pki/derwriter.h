#pragma once

#include <string>
#include <string_view>

// Bytes of DER put together by hand, for what no program writes.

enum DerTag : unsigned char
{
    DerInteger = 0x02,
    DerBitString = 0x03,
    DerOctetString = 0x04,
    DerObjectId = 0x06,
    DerUtf8String = 0x0C,
    DerPrintableString = 0x13,
    DerUtcTime = 0x17,
    DerGeneralizedTime = 0x18,
    DerSequence = 0x30,
    DerSet = 0x31,
    DerContext0 = 0xA0
};

/// Tag, length and content.
inline std::string der(unsigned char tag, std::string_view content)
{
    std::string length;
    for (std::size_t rest = content.size(); rest > 0; rest >>= 8) {
        length.insert(length.begin(), static_cast<char>(rest & 0xFF));
    }
    std::string item(1, static_cast<char>(tag));
    if (content.size() < 0x80) {
        item += static_cast<char>(content.size());
    } else {
        item += static_cast<char>(0x80 | length.size());
        item += length;
    }
    return item.append(content);
}

/// A whole number of one byte.
inline std::string derSmallInteger(char value)
{
    return der(DerInteger, std::string_view(&value, 1));
}
