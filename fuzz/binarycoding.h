#pragma once

#include "fuzz/require.h"
#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_binarydecoder.h"
#include "stack/opcua_binaryencoder.h"
#include "stack/opcua_builtindispatch.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_encodeabletypetable.h"
#include "stack/opcua_memorystream.h"
#include "stack/opcua_messagecontext.h"
#include "stack/opcua_namespacetable.h"
#include "tests/support/allocationsum.h"

#include <array>
#include <cstring>
#include <type_traits>
#include <vector>

// Values through the tables of a binary encoder and decoder, for fuzz targets.

using Bytes = std::vector<OpcUa_Byte>;

/// The standard's types and namespace, and the default limits.
inline const OpcUa_MessageContext& codingContext()
{
    static const OpcUa_MessageContext made = [] {
        require(OpcUa_IsGood(OpcUa_NamespaceTable_AddUri(
            &OpcUa_Namespaces, OpcUa_NamespaceTable_StandardUri, nullptr)));
        require(OpcUa_IsGood(OpcUa_EncodeableTypeTable_AddTypes(&OpcUa_EncodeableTypes,
                                                                OpcUa_KnownEncodeableTypes)));
        OpcUa_MessageContext fresh;
        OpcUa_MessageContext_Initialize(&fresh);
        fresh.NamespaceUris = &OpcUa_Namespaces;
        fresh.KnownTypes = &OpcUa_EncodeableTypes;
        return fresh;
    }();
    return made;
}

/// Runs `read(decoder)` over the bytes, which may take 64 times their memory and 1 MiB.
template <typename Read>
OpcUa_StatusCode readBounded(const OpcUa_Byte* data, std::size_t size, Read read)
{
    OpcUa_InputStream* stream = nullptr;
    OpcUa_Decoder* decoder = nullptr;
    require(OpcUa_IsGood(
        OpcUa_MemoryInputStream_Create(data, static_cast<OpcUa_UInt32>(size), &stream)));
    require(OpcUa_IsGood(OpcUa_BinaryDecoder_Create(&decoder)));
    require(OpcUa_IsGood(decoder->Interface->Open(decoder, stream, &codingContext())));
    OpcUa_StatusCode status = OpcUa_Good;
    {
        const AllocationSum memory;
        status = read(*decoder);
        require(AllocationSum::isWithinWorthOf(size));
    }
    require(OpcUa_IsGood(decoder->Interface->Delete(&decoder)));
    require(OpcUa_IsGood(stream->Interface->Delete(&stream)));
    return status;
}

/// What `write(encoder, size)` writes, after it announced its size.
template <typename Write>
Bytes writeAnnounced(Write write)
{
    OpcUa_OutputStream* stream = nullptr;
    OpcUa_Encoder* encoder = nullptr;
    require(OpcUa_IsGood(OpcUa_MemoryOutputStream_Create(64, 0, &stream)));
    require(OpcUa_IsGood(OpcUa_BinaryEncoder_Create(&encoder)));
    require(OpcUa_IsGood(encoder->Interface->Open(encoder, stream, &codingContext())));
    OpcUa_Int32 size = 0;
    require(OpcUa_IsGood(write(*encoder, &size)));
    require(OpcUa_IsGood(write(*encoder, nullptr)));
    const OpcUa_Byte* buffer = nullptr;
    OpcUa_UInt32 length = 0;
    require(OpcUa_IsGood(OpcUa_MemoryOutputStream_GetBuffer(stream, &buffer, &length)));
    require(length == static_cast<OpcUa_UInt32>(size));
    Bytes bytes(buffer, buffer + length);
    require(OpcUa_IsGood(encoder->Interface->Delete(&encoder)));
    require(OpcUa_IsGood(stream->Interface->Delete(&stream)));
    return bytes;
}
