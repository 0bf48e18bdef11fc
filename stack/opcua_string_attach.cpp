#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_string.h"
#include "stack/opcua_stringparts.h"

#include <cstring>

namespace {

/// The length of a source text in bytes, measured when it is asked for.
std::size_t sizeOf(const char* source, OpcUa_UInt32 length)
{
    return length == OpcUa_String_WholeLength ? std::strlen(source) : length;
}

/// With copying, record and text lie in one zeroed block, which OpcUa_String_Delete frees as a whole;
/// so the record doesn't own its content then.
OpcUa_StatusCode create(char* source, std::size_t size, bool copyText, bool freeOnClear,
                        OpcUa_String** string)
{
    const std::size_t textSize = copyText ? size + 1 : 0;
    auto* block = static_cast<char*>(OpcUa_Memory_AllocZeroed(1, sizeof(OpcUa_String) + textSize));
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    *string = reinterpret_cast<OpcUa_String*>(block);
    (*string)->uLength = static_cast<OpcUa_UInt32>(size);
    if (copyText) {
        (*string)->strContent = block + sizeof(OpcUa_String);
        std::memcpy((*string)->strContent, source, size);
    } else {
        (*string)->flags = freeOnClear && source != nullptr ? OpcUa_String_OwnsContent : 0;
        (*string)->strContent = source;
    }
    return OpcUa_Good;
}

} // namespace

OpcUa_StatusCode OpcUa_String_AttachToString(const char* source, OpcUa_UInt32 length,
                                             OpcUa_UInt32 /*reserve*/, bool copyText,
                                             bool freeOnClear, OpcUa_String* string)
{
    if (string == nullptr || OpcUa_String_IsPlainText(string)) {
        return OpcUa_BadInvalidArgument;
    }
    const std::size_t size = source == nullptr ? 0 : sizeOf(source, length);
    if (source == nullptr || size > OpcUa_String_MaxSize) {
        OpcUa_String_Clear(string);
        return OpcUa_BadInvalidArgument;
    }
    // A record that isn't the owner never writes to its content, so the cast away of const is safe.
    char* content = copyText ? OpcUa_String_DuplicateText(source, size) : const_cast<char*>(source);
    OpcUa_String_Clear(string);
    if (content == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    *string = {freeOnClear ? OpcUa_String_OwnsContent : 0, static_cast<OpcUa_UInt32>(size),
               content};
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_String_AttachReadOnly(OpcUa_String* string, const char* source)
{
    return OpcUa_String_AttachToString(source, OpcUa_String_WholeLength, 0, false, false, string);
}

OpcUa_StatusCode OpcUa_String_AttachCopy(OpcUa_String* string, const char* source)
{
    return OpcUa_String_AttachToString(source, OpcUa_String_WholeLength, 0, true, true, string);
}

OpcUa_StatusCode OpcUa_String_AttachWithOwnership(OpcUa_String* string, char* source)
{
    return OpcUa_String_AttachToString(source, OpcUa_String_WholeLength, 0, false, true, string);
}

OpcUa_StatusCode OpcUa_String_CreateNewString(const char* source, OpcUa_UInt32 length,
                                              OpcUa_UInt32 /*reserve*/, bool copyText,
                                              bool freeOnClear, OpcUa_String** string)
{
    if (string == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *string = nullptr;
    const std::size_t size = source == nullptr ? 0 : sizeOf(source, length);
    return size > OpcUa_String_MaxSize ? OpcUa_BadInvalidArgument
                                       : create(const_cast<char*>(source), size,
                                                copyText && source != nullptr, freeOnClear, string);
}

void OpcUa_String_Delete(OpcUa_String** string)
{
    if (string == nullptr || *string == nullptr) {
        return;
    }
    OpcUa_String_Clear(*string);
    OpcUa_Memory_Free(*string);
    *string = nullptr;
}
