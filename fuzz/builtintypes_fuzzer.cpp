// A value or an array of any built-in type, told by the first byte of the input: an error that leaves
// nothing behind, or a value that encodes to bytes which decode to an equal value and encode to
// themselves, in the size that was announced and within the memory that the bytes are worth.

#include "fuzz/binarycoding.h"

#include <iterator>

namespace {

using Writer = OpcUa_EncoderInterface;
using Reader = OpcUa_DecoderInterface;

/// The operations of one type.
struct Target
{
    OpcUa_Byte type;
    void (*runValue)(OpcUa_Byte type, const OpcUa_Byte* data, std::size_t size);
    void (*runArray)(OpcUa_Byte type, const OpcUa_Byte* data, std::size_t size);
};

template <typename T, auto write, auto read>
void runValue(OpcUa_Byte type, const OpcUa_Byte* data, std::size_t size)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(type);
    const auto decode = [](const OpcUa_Byte* from, std::size_t length, T& value) {
        return readBounded(from, length, [&](OpcUa_Decoder& decoder) {
            return (decoder.Interface->*read)(&decoder, nullptr, &value);
        });
    };
    const auto encode = [](const T& value) {
        return writeAnnounced([&](OpcUa_Encoder& encoder, OpcUa_Int32* announced) {
            return (encoder.Interface->*write)(&encoder, nullptr, &value, announced);
        });
    };
    T value;
    if (OpcUa_IsBad(decode(data, size, value))) {
        T empty;
        traits.Initialize(&empty);
        require(traits.Compare(&value, &empty) == 0);
        return;
    }
    const Bytes bytes = encode(value);
    T twin;
    require(OpcUa_IsGood(decode(bytes.data(), bytes.size(), twin)));
    require(encode(twin) == bytes);
    traits.Clear(&value);
    traits.Clear(&twin);
}

template <typename T, auto write, auto read>
void runArray(OpcUa_Byte type, const OpcUa_Byte* data, std::size_t size)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(type);
    const auto decode = [](const OpcUa_Byte* from, std::size_t length, T*& values,
                           OpcUa_Int32& count) {
        return readBounded(from, length, [&](OpcUa_Decoder& decoder) {
            return (decoder.Interface->*read)(&decoder, nullptr, &values, &count);
        });
    };
    const auto encode = [](const T* values, OpcUa_Int32 count) {
        return writeAnnounced([&](OpcUa_Encoder& encoder, OpcUa_Int32* announced) {
            return (encoder.Interface->*write)(&encoder, nullptr, values, count, announced);
        });
    };
    T* values = nullptr;
    OpcUa_Int32 count = 0;
    if (OpcUa_IsBad(decode(data, size, values, count))) {
        require(values == nullptr && count == 0);
        return;
    }
    const Bytes bytes = encode(values, count);
    T* twins = nullptr;
    OpcUa_Int32 twinCount = 0;
    require(OpcUa_IsGood(decode(bytes.data(), bytes.size(), twins, twinCount)));
    require(twinCount == count && encode(twins, twinCount) == bytes);
    OpcUa_Elements_Free(traits, values, count);
    OpcUa_Elements_Free(traits, twins, twinCount);
}

template <typename T, auto write, auto read, auto writeArray, auto readArray>
constexpr Target target(OpcUa_Byte type)
{
    return {type, runValue<T, write, read>, runArray<T, writeArray, readArray>};
}

constexpr Target targets[] = {
    target<OpcUa_Boolean, &Writer::WriteBoolean, &Reader::ReadBoolean, &Writer::WriteBooleanArray,
           &Reader::ReadBooleanArray>(OpcUaType_Boolean),
    target<OpcUa_SByte, &Writer::WriteSByte, &Reader::ReadSByte, &Writer::WriteSByteArray,
           &Reader::ReadSByteArray>(OpcUaType_SByte),
    target<OpcUa_Byte, &Writer::WriteByte, &Reader::ReadByte, &Writer::WriteByteArray,
           &Reader::ReadByteArray>(OpcUaType_Byte),
    target<OpcUa_Int16, &Writer::WriteInt16, &Reader::ReadInt16, &Writer::WriteInt16Array,
           &Reader::ReadInt16Array>(OpcUaType_Int16),
    target<OpcUa_UInt16, &Writer::WriteUInt16, &Reader::ReadUInt16, &Writer::WriteUInt16Array,
           &Reader::ReadUInt16Array>(OpcUaType_UInt16),
    target<OpcUa_Int32, &Writer::WriteInt32, &Reader::ReadInt32, &Writer::WriteInt32Array,
           &Reader::ReadInt32Array>(OpcUaType_Int32),
    target<OpcUa_UInt32, &Writer::WriteUInt32, &Reader::ReadUInt32, &Writer::WriteUInt32Array,
           &Reader::ReadUInt32Array>(OpcUaType_UInt32),
    target<OpcUa_Int64, &Writer::WriteInt64, &Reader::ReadInt64, &Writer::WriteInt64Array,
           &Reader::ReadInt64Array>(OpcUaType_Int64),
    target<OpcUa_UInt64, &Writer::WriteUInt64, &Reader::ReadUInt64, &Writer::WriteUInt64Array,
           &Reader::ReadUInt64Array>(OpcUaType_UInt64),
    target<OpcUa_Float, &Writer::WriteFloat, &Reader::ReadFloat, &Writer::WriteFloatArray,
           &Reader::ReadFloatArray>(OpcUaType_Float),
    target<OpcUa_Double, &Writer::WriteDouble, &Reader::ReadDouble, &Writer::WriteDoubleArray,
           &Reader::ReadDoubleArray>(OpcUaType_Double),
    target<OpcUa_String, &Writer::WriteString, &Reader::ReadString, &Writer::WriteStringArray,
           &Reader::ReadStringArray>(OpcUaType_String),
    target<OpcUa_DateTime, &Writer::WriteDateTime, &Reader::ReadDateTime,
           &Writer::WriteDateTimeArray, &Reader::ReadDateTimeArray>(OpcUaType_DateTime),
    target<OpcUa_Guid, &Writer::WriteGuid, &Reader::ReadGuid, &Writer::WriteGuidArray,
           &Reader::ReadGuidArray>(OpcUaType_Guid),
    target<OpcUa_ByteString, &Writer::WriteByteString, &Reader::ReadByteString,
           &Writer::WriteByteStringArray, &Reader::ReadByteStringArray>(OpcUaType_ByteString),
    target<OpcUa_XmlElement, &Writer::WriteXmlElement, &Reader::ReadXmlElement,
           &Writer::WriteXmlElementArray, &Reader::ReadXmlElementArray>(OpcUaType_XmlElement),
    target<OpcUa_NodeId, &Writer::WriteNodeId, &Reader::ReadNodeId, &Writer::WriteNodeIdArray,
           &Reader::ReadNodeIdArray>(OpcUaType_NodeId),
    target<OpcUa_ExpandedNodeId, &Writer::WriteExpandedNodeId, &Reader::ReadExpandedNodeId,
           &Writer::WriteExpandedNodeIdArray, &Reader::ReadExpandedNodeIdArray>(
        OpcUaType_ExpandedNodeId),
    target<OpcUa_StatusCode, &Writer::WriteStatusCode, &Reader::ReadStatusCode,
           &Writer::WriteStatusCodeArray, &Reader::ReadStatusCodeArray>(OpcUaType_StatusCode),
    target<OpcUa_QualifiedName, &Writer::WriteQualifiedName, &Reader::ReadQualifiedName,
           &Writer::WriteQualifiedNameArray, &Reader::ReadQualifiedNameArray>(
        OpcUaType_QualifiedName),
    target<OpcUa_LocalizedText, &Writer::WriteLocalizedText, &Reader::ReadLocalizedText,
           &Writer::WriteLocalizedTextArray, &Reader::ReadLocalizedTextArray>(
        OpcUaType_LocalizedText),
    target<OpcUa_ExtensionObject, &Writer::WriteExtensionObject, &Reader::ReadExtensionObject,
           &Writer::WriteExtensionObjectArray, &Reader::ReadExtensionObjectArray>(
        OpcUaType_ExtensionObject),
    target<OpcUa_DataValue, &Writer::WriteDataValue, &Reader::ReadDataValue,
           &Writer::WriteDataValueArray, &Reader::ReadDataValueArray>(OpcUaType_DataValue),
    target<OpcUa_Variant, &Writer::WriteVariant, &Reader::ReadVariant, &Writer::WriteVariantArray,
           &Reader::ReadVariantArray>(OpcUaType_Variant),
    target<OpcUa_DiagnosticInfo, &Writer::WriteDiagnosticInfo, &Reader::ReadDiagnosticInfo,
           &Writer::WriteDiagnosticInfoArray, &Reader::ReadDiagnosticInfoArray>(
        OpcUaType_DiagnosticInfo),
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const Target& chosen = targets[data[0] % std::size(targets)];
    const bool isArray = data[0] / std::size(targets) % 2 != 0;
    (isArray ? chosen.runArray : chosen.runValue)(chosen.type, data + 1, size - 1);
    return 0;
}
