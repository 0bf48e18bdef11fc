#include "stack/opcua_binaryread.h"
#include "stack/opcua_encodeabletype.h"
#include "stack/opcua_encodeabletypetable.h"
#include "stack/opcua_namespacetable.h"

#include <algorithm>

namespace {

/// Hides what lies behind the body of an extension object while its record is read.
class BodyBounds
{
public:
    BodyBounds(OpcUa_BinaryReader& reader, std::size_t bodySize)
        : m_reader(reader)
        , m_owed(reader.Owed)
    {
        const std::size_t hidden = reader.remaining() - bodySize;
        m_hiddenBehind = std::min(hidden, reader.Behind);
        m_hiddenAhead = hidden - m_hiddenBehind;
        reader.Behind -= m_hiddenBehind;
        reader.Buffer->End -= m_hiddenAhead;
        // What the arrays outside need lies outside too.
        reader.Owed = 0;
    }
    ~BodyBounds()
    {
        m_reader.Behind += m_hiddenBehind;
        m_reader.Buffer->End += m_hiddenAhead;
        m_reader.Owed = m_owed;
    }
    BodyBounds(const BodyBounds&) = delete;
    BodyBounds& operator=(const BodyBounds&) = delete;

private:
    OpcUa_BinaryReader& m_reader;
    std::size_t m_owed;
    std::size_t m_hiddenBehind;
    std::size_t m_hiddenAhead;
};

/// The row behind a type id; null for an id that no row stands for.
const OpcUa_EncodeableType* findType(const OpcUa_MessageContext& context,
                                     const OpcUa_ExpandedNodeId& typeId)
{
    const OpcUa_NodeId& nodeId = typeId.NodeId;
    if (context.KnownTypes == nullptr || nodeId.IdentifierType != OpcUa_IdentifierType_Numeric ||
        typeId.ServerIndex != 0) {
        return nullptr;
    }
    const char* uri = typeId.NamespaceUri.strContent;
    if (uri == nullptr && nodeId.NamespaceIndex != 0) {
        uri = OpcUa_NamespaceTable_GetUri(context.NamespaceUris, nodeId.NamespaceIndex);
        if (uri == nullptr) {
            return nullptr;
        }
    }
    const OpcUa_EncodeableType* type = nullptr;
    const OpcUa_StatusCode status =
        OpcUa_EncodeableTypeTable_Find(context.KnownTypes, nodeId.Identifier.Numeric, uri, &type);
    return OpcUa_IsGood(status) && type != nullptr && type->Decode != nullptr ? type : nullptr;
}

/// A new record, or null after a failure.
OpcUa_StatusCode readRecord(OpcUa_BinaryReader& reader, const OpcUa_EncodeableType& type,
                            void*& record)
{
    record = OpcUa_Memory_Alloc(type.AllocationSize);
    if (record == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    const OpcUa_StatusCode status = type.Decode(record, reader.Decoder);
    if (OpcUa_IsBad(status)) {
        OpcUa_Memory_Free(record);
        record = nullptr;
    }
    return status;
}

OpcUa_StatusCode readBoundedRecord(OpcUa_BinaryReader& reader, const OpcUa_EncodeableType& type,
                                   std::size_t bodySize, void*& record)
{
    const BodyBounds bounds(reader, bodySize);
    const OpcUa_StatusCode status = readRecord(reader, type, record);
    if (OpcUa_IsBad(status) || reader.remaining() == 0) {
        return status;
    }
    type.Clear(record);
    OpcUa_Memory_Free(record);
    record = nullptr;
    return OpcUa_BadDecodingError;
}

OpcUa_StatusCode readRecordBody(OpcUa_BinaryReader& reader, const OpcUa_EncodeableType& type,
                                OpcUa_ExtensionObject& value)
{
    OpcUa_Int32 length = 0;
    OpcUa_StatusCode status = OpcUa_BinaryRead_TextLength(reader, 0, length);
    if (OpcUa_IsGood(status) && length < 0) {
        status = OpcUa_BadDecodingError;
    }
    if (OpcUa_IsBad(status)) {
        return status;
    }
    void* record = nullptr;
    status = readBoundedRecord(reader, type, static_cast<std::size_t>(length), record);
    if (OpcUa_IsGood(status)) {
        value.Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
        value.Body.EncodeableObject = {record, &type};
        value.BodySize = length;
    }
    return status;
}

OpcUa_StatusCode readBytesBody(OpcUa_BinaryReader& reader, OpcUa_ExtensionObjectEncoding encoding,
                               OpcUa_ExtensionObject& value)
{
    const OpcUa_StatusCode status = OpcUa_BinaryRead_ByteString(reader, value.Body.Binary);
    if (OpcUa_IsGood(status)) {
        value.Encoding = encoding;
        value.BodySize = std::max(value.Body.Binary.Length, 0);
    }
    return status;
}

OpcUa_StatusCode readBody(OpcUa_BinaryReader& reader, OpcUa_ExtensionObject& value)
{
    OpcUa_Byte form = 0;
    const OpcUa_StatusCode status = OpcUa_BinaryRead_Plain(reader, form);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    switch (form) {
    case OpcUa_BinaryBody_None:
        return OpcUa_Good;
    case OpcUa_BinaryBody_Bytes: {
        const OpcUa_EncodeableType* type = findType(*reader.Context, value.TypeId);
        return type != nullptr ? readRecordBody(reader, *type, value)
                               : readBytesBody(reader, OpcUa_ExtensionObjectEncoding_Binary, value);
    }
    case OpcUa_BinaryBody_Xml:
        return readBytesBody(reader, OpcUa_ExtensionObjectEncoding_Xml, value);
    default:
        return OpcUa_BadDecodingError;
    }
}

} // namespace

OpcUa_StatusCode OpcUa_BinaryRead_ExtensionObject(OpcUa_BinaryReader& reader,
                                                  OpcUa_ExtensionObject& value)
{
    OpcUa_ExtensionObject_Initialize(&value);
    const OpcUa_BinaryLevel level(reader.Level);
    if (level.isTooDeep()) {
        return OpcUa_BadEncodingLimitsExceeded;
    }
    OpcUa_StatusCode status = OpcUa_BinaryRead_ExpandedNodeId(reader, value.TypeId);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    status = readBody(reader, value);
    if (OpcUa_IsBad(status)) {
        // Nothing of the body is kept after a failure, so only the type id is to be freed.
        OpcUa_ExpandedNodeId_Clear(&value.TypeId);
        OpcUa_ExtensionObject_Initialize(&value);
    }
    return status;
}

OpcUa_StatusCode OpcUa_BinaryRead_Message(OpcUa_BinaryReader& reader, void*& message,
                                          const OpcUa_EncodeableType*& type)
{
    message = nullptr;
    type = nullptr;
    OpcUa_ExpandedNodeId typeId = {};
    OpcUa_StatusCode status = OpcUa_BinaryRead_NodeId(reader, typeId.NodeId);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    const OpcUa_EncodeableType* row = findType(*reader.Context, typeId);
    OpcUa_ExpandedNodeId_Clear(&typeId);
    if (row == nullptr) {
        return OpcUa_BadDecodingError;
    }
    status = readRecord(reader, *row, message);
    if (OpcUa_IsGood(status)) {
        type = row;
    }
    return status;
}
