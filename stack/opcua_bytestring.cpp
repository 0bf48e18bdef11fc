#include "stack/opcua_bytestring.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_recordpattern.h"
#include "stack/opcua_scalars.h"

#include <cstring>
#include <limits>

namespace {

OpcUa_StatusCode fillByteString(const OpcUa_ByteString& source, OpcUa_ByteString& copy)
{
    if (source.Length > 0 && source.Data == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    if (source.Length < 0) {
        return OpcUa_Good;
    }
    const auto size = static_cast<std::size_t>(source.Length);
    if (source.Data != nullptr) {
        copy.Data = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(size));
        if (copy.Data == nullptr) {
            return OpcUa_BadOutOfMemory;
        }
        std::memcpy(copy.Data, source.Data, size);
    }
    copy.Length = source.Length;
    return OpcUa_Good;
}

OpcUa_Int32 compareBytes(const OpcUa_ByteString& left, const OpcUa_ByteString& right)
{
    if (left.Length != right.Length) {
        return OpcUa_Scalar_CompareSmallInteger(left.Length, right.Length);
    }
    if (left.Length < 1 || left.Data == right.Data) {
        return 0;
    }
    if (left.Data == nullptr || right.Data == nullptr) {
        return left.Data == nullptr ? -1 : 1;
    }
    const int order = std::memcmp(left.Data, right.Data, static_cast<std::size_t>(left.Length));
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

/// The number of bytes that a concatenation appends, 0 when the source doesn't have them.
OpcUa_Int32 countAppended(const OpcUa_ByteString& source, OpcUa_Int32 length)
{
    if (source.Data == nullptr || length > source.Length) {
        return 0;
    }
    return length < 1 ? source.Length : length;
}

} // namespace

void OpcUa_ByteString_Initialize(OpcUa_ByteString* byteString)
{
    if (byteString != nullptr) {
        *byteString = {-1, nullptr};
    }
}

void OpcUa_ByteString_Clear(OpcUa_ByteString* byteString)
{
    if (byteString != nullptr) {
        OpcUa_Memory_Free(byteString->Data);
        OpcUa_ByteString_Initialize(byteString);
    }
}

OpcUa_StatusCode OpcUa_ByteString_CopyTo(const OpcUa_ByteString* source,
                                         OpcUa_ByteString* destination)
{
    return OpcUa_Record_CopyTo<OpcUa_ByteString_Initialize, OpcUa_ByteString_Clear>(
        source, destination, fillByteString);
}

OpcUa_Int32 OpcUa_ByteString_Compare(const OpcUa_ByteString* left, const OpcUa_ByteString* right)
{
    if (left == right) {
        return 0;
    }
    // From either side: this type tells a null pointer apart but doesn't order it.
    if (left == nullptr || right == nullptr) {
        return 1;
    }
    return compareBytes(*left, *right);
}

OpcUa_StatusCode OpcUa_ByteString_Concatenate(const OpcUa_ByteString* source,
                                              OpcUa_ByteString* destination, OpcUa_Int32 length)
{
    if (source == nullptr || destination == nullptr || source == destination ||
        destination->Length < 1) {
        return OpcUa_BadInvalidArgument;
    }
    const OpcUa_Int32 appended = countAppended(*source, length);
    if (appended < 1) {
        return OpcUa_BadInvalidArgument;
    }
    const OpcUa_Int64 sum = OpcUa_Int64{destination->Length} + appended;
    if (sum > std::numeric_limits<OpcUa_Int32>::max()) {
        return OpcUa_BadOutOfMemory;
    }
    // The old block stays until the bytes are copied: the source may share it.
    auto* data = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(static_cast<std::size_t>(sum)));
    if (data == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    std::memcpy(data, destination->Data, static_cast<std::size_t>(destination->Length));
    std::memcpy(data + destination->Length, source->Data, static_cast<std::size_t>(appended));
    OpcUa_Memory_Free(destination->Data);
    *destination = {static_cast<OpcUa_Int32>(sum), data};
    return OpcUa_Good;
}
