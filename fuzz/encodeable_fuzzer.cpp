// A message of any known type, told by its id: an error, or a record that encodes to bytes which
// decode to an equal record and encode to themselves, in the size that was announced; copies are equal
// and encode the same.

#include "fuzz/binarycoding.h"
#include "stack/opcua_encodeableobject.h"

namespace {

/// The record of a message and its row; null for bytes that are no message.
void* decode(const OpcUa_Byte* data, std::size_t size, const OpcUa_EncodeableType*& type)
{
    void* record = nullptr;
    const OpcUa_StatusCode status = readBounded(data, size, [&](OpcUa_Decoder& decoder) {
        return decoder.Interface->ReadMessage(&decoder, &record, &type);
    });
    require(OpcUa_IsGood(status) == (record != nullptr && type != nullptr));
    return record;
}

Bytes encode(const void* record, const OpcUa_EncodeableType& type)
{
    return writeAnnounced([&](OpcUa_Encoder& encoder, OpcUa_Int32* size) {
        return encoder.Interface->WriteMessage(&encoder, record, &type, size);
    });
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
