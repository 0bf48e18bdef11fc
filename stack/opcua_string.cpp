#include "stack/opcua_string.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_stringparts.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

/// Lead bytes of one length: those that have `prefix` under `mask`.
struct LeadByte
{
    unsigned char mask;
    unsigned char prefix;
    unsigned char followers;
};

constexpr std::array<LeadByte, 5> leadBytes = {
    {{0xE0, 0xC0, 1}, {0xF0, 0xE0, 2}, {0xF8, 0xF0, 3}, {0xFC, 0xF8, 4}, {0xFE, 0xFC, 5}}};

std::size_t countFollowers(unsigned char byte)
{
    for (const LeadByte& lead : leadBytes) {
        if ((byte & lead.mask) == lead.prefix) {
            return lead.followers;
        }
    }
    return 0;
}

} // namespace

void OpcUa_String_Initialize(OpcUa_String* string)
{
    if (string != nullptr) {
        *string = {};
    }
}

void OpcUa_String_Clear(OpcUa_String* string)
{
    if (string == nullptr || OpcUa_String_IsPlainText(string)) {
        return;
    }
    if ((string->flags & OpcUa_String_OwnsContent) != 0) {
        OpcUa_Memory_Free(string->strContent);
    }
    *string = {};
}

const char* OpcUa_String_GetRawString(const OpcUa_String* string)
{
    if (string == nullptr) {
        return nullptr;
    }
    return OpcUa_String_IsPlainText(string) ? reinterpret_cast<const char*>(string)
                                            : string->strContent;
}

OpcUa_UInt32 OpcUa_String_StrSize(const OpcUa_String* string)
{
    if (OpcUa_String_IsNull(string)) {
        return 0;
    }
    if (OpcUa_String_IsPlainText(string)) {
        return static_cast<OpcUa_UInt32>(
            std::min(std::strlen(OpcUa_String_GetRawString(string)), OpcUa_String_MaxSize));
    }
    return string->uLength;
}

OpcUa_UInt32 OpcUa_String_StrLen(const OpcUa_String* string)
{
    const char* text = OpcUa_String_GetRawString(string);
    const std::size_t size = OpcUa_String_StrSize(string);
    OpcUa_UInt32 count = 0;
    for (std::size_t i = 0; i < size; ++count) {
        const auto byte = static_cast<unsigned char>(text[i]);
        i += 1 + (byte < 0xC0 ? 0 : countFollowers(byte));
    }
    return count;
}

bool OpcUa_String_IsNull(const OpcUa_String* string)
{
    return string == nullptr ||
           (!OpcUa_String_IsPlainText(string) && string->strContent == nullptr);
}

bool OpcUa_String_IsEmpty(const OpcUa_String* string)
{
    return !OpcUa_String_IsNull(string) && !OpcUa_String_IsPlainText(string) &&
           string->uLength == 0;
}

OpcUa_StatusCode OpcUa_String_CopyTo(const OpcUa_String* source, OpcUa_String* destination)
{
    if (source == nullptr) {
        OpcUa_String_Clear(destination);
        return OpcUa_BadInvalidArgument;
    }
    return OpcUa_String_StrnCpy(destination, source, OpcUa_String_WholeLength);
}

OpcUa_StatusCode OpcUa_String_StrnCpy(OpcUa_String* destination, const OpcUa_String* source,
                                      OpcUa_UInt32 maximum)
{
    if (destination == nullptr || OpcUa_String_IsPlainText(destination)) {
        return OpcUa_BadInvalidArgument;
    }
    if (OpcUa_String_IsNull(source)) {
        OpcUa_String_Clear(destination);
        return OpcUa_Good;
    }
    // The copy is made first: the source may be the destination, or lie inside its content.
    const OpcUa_UInt32 size = std::min(OpcUa_String_StrSize(source), maximum);
    char* text = OpcUa_String_DuplicateText(OpcUa_String_GetRawString(source), size);
    OpcUa_String_Clear(destination);
    if (text == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    *destination = {OpcUa_String_OwnsContent, size, text};
    return OpcUa_Good;
}
