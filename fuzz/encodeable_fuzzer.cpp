// A message of any known type, told by its id: an error, or a record that encodes to bytes which
// decode to an equal record and encode to themselves, in the size that was announced; copies are equal
// and encode the same.

#include "fuzz/require.h"
#include "platform/status.h"
#include "stack/opcua_binarydecoder.h"
#include "stack/opcua_binaryencoder.h"
#include "stack/opcua_encodeableobject.h"
#include "stack/opcua_encodeabletypetable.h"
#include "stack/opcua_memorystream.h"
#include "stack/opcua_messagecontext.h"
#include "stack/opcua_namespacetable.h"

#include <vector>

namespace {

using Bytes = std::vector<OpcUa_Byte>;

const OpcUa_MessageContext& context()
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

/// The record of a message and its row; null for bytes that are no message.
void* decode(const OpcUa_Byte* data, std::size_t size, const OpcUa_EncodeableType*& type)
{
    OpcUa_InputStream* stream = nullptr;
    OpcUa_Decoder* decoder = nullptr;
    require(OpcUa_IsGood(
        OpcUa_MemoryInputStream_Create(data, static_cast<OpcUa_UInt32>(size), &stream)));
    require(OpcUa_IsGood(OpcUa_BinaryDecoder_Create(&decoder)));
    require(OpcUa_IsGood(decoder->Interface->Open(decoder, stream, &context())));
    void* record = nullptr;
    const OpcUa_StatusCode status = decoder->Interface->ReadMessage(decoder, &record, &type);
    require(OpcUa_IsGood(status) == (record != nullptr && type != nullptr));
    decoder->Interface->Delete(&decoder);
    stream->Interface->Delete(&stream);
    return record;
}

Bytes encode(const void* record, const OpcUa_EncodeableType& type)
{
    OpcUa_OutputStream* stream = nullptr;
    OpcUa_Encoder* encoder = nullptr;
    require(OpcUa_IsGood(OpcUa_MemoryOutputStream_Create(64, 0, &stream)));
    require(OpcUa_IsGood(OpcUa_BinaryEncoder_Create(&encoder)));
    require(OpcUa_IsGood(encoder->Interface->Open(encoder, stream, &context())));
    OpcUa_Int32 size = 0;
    require(OpcUa_IsGood(encoder->Interface->WriteMessage(encoder, record, &type, &size)));
    require(OpcUa_IsGood(encoder->Interface->WriteMessage(encoder, record, &type, nullptr)));
    const OpcUa_Byte* buffer = nullptr;
    OpcUa_UInt32 length = 0;
    require(OpcUa_IsGood(OpcUa_MemoryOutputStream_GetBuffer(stream, &buffer, &length)));
    require(length == static_cast<OpcUa_UInt32>(size));
    Bytes bytes(buffer, buffer + length);
    encoder->Interface->Delete(&encoder);
    stream->Interface->Delete(&stream);
    return bytes;
}

void checkCopy(const void* record, const OpcUa_EncodeableType& type, const Bytes& bytes)
{
    void* copy = nullptr;
    require(OpcUa_IsGood(type.Copy(record, &copy)));
    require(type.Compare(record, copy) == 0);
    require(encode(copy, type) == bytes);
    OpcUa_EncodeableObject_Delete(&type, &copy);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const OpcUa_EncodeableType* type = nullptr;
    void* record = decode(data, size, type);
    if (record == nullptr) {
        return 0;
    }
    const Bytes bytes = encode(record, *type);
    const OpcUa_EncodeableType* twinType = nullptr;
    void* twin = decode(bytes.data(), bytes.size(), twinType);
    require(twin != nullptr && twinType == type);
    require(encode(twin, *type) == bytes);
    checkCopy(record, *type, bytes);
    OpcUa_EncodeableObject_Delete(type, &record);
    OpcUa_EncodeableObject_Delete(type, &twin);
    return 0;
}
