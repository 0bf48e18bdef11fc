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

void releaseContent(OpcUa_String& string)
{
    if ((string.flags & OpcUa_String_OwnsContent) != 0) {
        OpcUa_Memory_Free(string.strContent);
    }
    string = {};
}

/// The one way in which a text gets into a string; in the way of every copied array of strings.
OpcUa_StatusCode copyText(const OpcUa_String* source, OpcUa_UInt32 maximum,
                          OpcUa_String* destination)
{
    if (destination == nullptr || OpcUa_String_IsPlainText(destination)) {
        return OpcUa_BadInvalidArgument;
    }
    const OpcUa_StringView view = OpcUa_String_View(source);
    if (view.text == nullptr) {
        releaseContent(*destination);
        return OpcUa_Good;
    }
    // The copy is made first: the source may be the destination, or lie inside its content.
    const OpcUa_UInt32 size = std::min(view.size, maximum);
    char* text = OpcUa_String_DuplicateText(view.text, size);
    releaseContent(*destination);
    if (text == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    *destination = {OpcUa_String_OwnsContent, size, text};
    return OpcUa_Good;
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
    if (string != nullptr && !OpcUa_String_IsPlainText(string)) {
        releaseContent(*string);
    }
}

const char* OpcUa_String_GetRawString(const OpcUa_String* string)
{
    return OpcUa_String_View(string).text;
}

OpcUa_UInt32 OpcUa_String_StrSize(const OpcUa_String* string)
{
    return OpcUa_String_View(string).size;
}

OpcUa_UInt32 OpcUa_String_StrLen(const OpcUa_String* string)
{
    const OpcUa_StringView view = OpcUa_String_View(string);
    OpcUa_UInt32 count = 0;
    for (std::size_t i = 0; i < view.size; ++count) {
        const auto byte = static_cast<unsigned char>(view.text[i]);
        i += 1 + (byte < 0xC0 ? 0 : countFollowers(byte));
    }
    return count;
}

bool OpcUa_String_IsNull(const OpcUa_String* string)
{
    return OpcUa_String_View(string).text == nullptr;
}

bool OpcUa_String_IsEmpty(const OpcUa_String* string)
{
    const OpcUa_StringView view = OpcUa_String_View(string);
    return view.text != nullptr && view.size == 0;
}

OpcUa_StatusCode OpcUa_String_CopyTo(const OpcUa_String* source, OpcUa_String* destination)
{
    if (source == nullptr) {
        OpcUa_String_Clear(destination);
        return OpcUa_BadInvalidArgument;
    }
    return copyText(source, OpcUa_String_WholeLength, destination);
}

OpcUa_StatusCode OpcUa_String_StrnCpy(OpcUa_String* destination, const OpcUa_String* source,
                                      OpcUa_UInt32 maximum)
{
    return copyText(source, maximum, destination);
}
