#include "base/uaarrays.h"
#include "base/uaarraytext.h"
#include "base/uabytearray.h"
#include "base/uavariant.h"
#include "base/uavariantparts.h"
#include "base/uavarianttexts.h"
#include "platform/allocator.h"

#include <utility>

// Getters of arrays.

using namespace UaVariantParts;

namespace {

/// A flat block that the caller owns.
struct Block
{
    OpcUa_Int32 length = 0;
    void* elements = nullptr;
};

OpcUa_StatusCode copyElements(const OpcUa_VariantArray& array, OpcUa_Byte type, Block& block)
{
    if (array.Length > 0 && array.Elements == nullptr) {
        return OpcUa_BadOutOfRange;
    }
    block.length = array.Length;
    return OpcUa_Elements_Copy(*OpcUa_BuiltInType_GetTraits(type), array.Elements, array.Length,
                               &block.elements);
}

OpcUa_StatusCode readElements(std::string_view text, OpcUa_Byte type, Block& block)
{
    UaArrayText arrayText;
    const OpcUa_StatusCode status = arrayText.open(text);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    UaArrayText::Reader reader(arrayText);
    block.length = arrayText.count();
    return UaVariantTexts::convert(
        type, block.length, [&reader] { return reader.next(); }, &block.elements);
}

OpcUa_StatusCode getElements(const OpcUa_Variant& variant, OpcUa_Byte type, Block& block)
{
    if (variant.Datatype == OpcUaType_Null) {
        return OpcUa_Good;
    }
    if (::isArray(variant) && variant.Datatype == type) {
        return copyElements(variant.Value.Array, type, block);
    }
    if (isScalarOf(variant, OpcUaType_String) && UaVariantTexts::isReadable(type)) {
        return readElements(viewOf(variant.Value.String), type, block);
    }
    return OpcUa_BadOutOfRange;
}

template <typename Array>
OpcUa_StatusCode getArray(const OpcUa_Variant& variant, OpcUa_Byte type, Array& array)
{
    Block block;
    const OpcUa_StatusCode status = getElements(variant, type, block);
    if (OpcUa_IsGood(status)) {
        array.attach(block.length, static_cast<typename Array::Element*>(block.elements), true);
    }
    return status;
}

OpcUa_StatusCode getBytes(const OpcUa_Byte* bytes, OpcUa_Int32 length, UaByteArray& array)
{
    if (length > 0 && bytes == nullptr) {
        return OpcUa_BadOutOfRange;
    }
    UaByteArray copy(bytes, length);
    if (copy.isEmpty() && length > 0) {
        return OpcUa_BadOutOfMemory;
    }
    array = std::move(copy);
    return OpcUa_Good;
}

} // namespace

OpcUa_StatusCode UaVariant::toBoolArray(UaBooleanArray& aValues) const
{
    return getArray(m_variant, OpcUaType_Boolean, aValues);
}

OpcUa_StatusCode UaVariant::toSByteArray(UaSByteArray& aValues) const
{
    return getArray(m_variant, OpcUaType_SByte, aValues);
}

OpcUa_StatusCode UaVariant::toByteArray(UaByteArray& aValues) const
{
    if (isScalarOf(m_variant, OpcUaType_ByteString)) {
        const OpcUa_ByteString& bytes = m_variant.Value.ByteString;
        return getBytes(bytes.Data, bytes.Length, aValues);
    }
    if (::isArray(m_variant) && m_variant.Datatype == OpcUaType_Byte) {
        const OpcUa_VariantArray& array = m_variant.Value.Array;
        return getBytes(static_cast<const OpcUa_Byte*>(array.Elements), array.Length, aValues);
    }
    Block block;
    OpcUa_StatusCode status = getElements(m_variant, OpcUaType_Byte, block);
    if (OpcUa_IsGood(status)) {
        status = getBytes(static_cast<const OpcUa_Byte*>(block.elements), block.length, aValues);
        OpcUa_Memory_Free(block.elements);
    }
    return status;
}

OpcUa_StatusCode UaVariant::toInt16Array(UaInt16Array& aValues) const
{
    return getArray(m_variant, OpcUaType_Int16, aValues);
}

OpcUa_StatusCode UaVariant::toUInt16Array(UaUInt16Array& aValues) const
{
    return getArray(m_variant, OpcUaType_UInt16, aValues);
}

OpcUa_StatusCode UaVariant::toInt32Array(UaInt32Array& aValues) const
{
    return getArray(m_variant, OpcUaType_Int32, aValues);
}

OpcUa_StatusCode UaVariant::toUInt32Array(UaUInt32Array& aValues) const
{
    return getArray(m_variant, OpcUaType_UInt32, aValues);
}

OpcUa_StatusCode UaVariant::toInt64Array(UaInt64Array& aValues) const
{
    return getArray(m_variant, OpcUaType_Int64, aValues);
}

OpcUa_StatusCode UaVariant::toUInt64Array(UaUInt64Array& aValues) const
{
    return getArray(m_variant, OpcUaType_UInt64, aValues);
}

OpcUa_StatusCode UaVariant::toFloatArray(UaFloatArray& aValues) const
{
    return getArray(m_variant, OpcUaType_Float, aValues);
}

OpcUa_StatusCode UaVariant::toDoubleArray(UaDoubleArray& aValues) const
{
    return getArray(m_variant, OpcUaType_Double, aValues);
}

OpcUa_StatusCode UaVariant::toStringArray(UaStringArray& aValues) const
{
    return getArray(m_variant, OpcUaType_String, aValues);
}

OpcUa_StatusCode UaVariant::toDateTimeArray(UaDateTimeArray& aValues) const
{
    return getArray(m_variant, OpcUaType_DateTime, aValues);
}

OpcUa_StatusCode UaVariant::toGuidArray(UaGuidArray& aValues) const
{
    return getArray(m_variant, OpcUaType_Guid, aValues);
}

OpcUa_StatusCode UaVariant::toByteStringArray(UaByteStringArray& aValues) const
{
    return getArray(m_variant, OpcUaType_ByteString, aValues);
}

OpcUa_StatusCode UaVariant::toXmlElementArray(UaByteStringArray& aValues) const
{
    return getArray(m_variant, OpcUaType_XmlElement, aValues);
}

OpcUa_StatusCode UaVariant::toNodeIdArray(UaNodeIdArray& aValues) const
{
    return getArray(m_variant, OpcUaType_NodeId, aValues);
}

OpcUa_StatusCode UaVariant::toExpandedNodeIdArray(UaExpandedNodeIdArray& aValues) const
{
    return getArray(m_variant, OpcUaType_ExpandedNodeId, aValues);
}

OpcUa_StatusCode UaVariant::toStatusCodeArray(UaStatusCodeArray& aValues) const
{
    return getArray(m_variant, OpcUaType_StatusCode, aValues);
}

OpcUa_StatusCode UaVariant::toQualifiedNameArray(UaQualifiedNameArray& aValues) const
{
    return getArray(m_variant, OpcUaType_QualifiedName, aValues);
}

OpcUa_StatusCode UaVariant::toLocalizedTextArray(UaLocalizedTextArray& aValues) const
{
    return getArray(m_variant, OpcUaType_LocalizedText, aValues);
}

OpcUa_StatusCode UaVariant::toExtensionObjectArray(UaExtensionObjectArray& aValues) const
{
    return getArray(m_variant, OpcUaType_ExtensionObject, aValues);
}

OpcUa_StatusCode UaVariant::toDataValueArray(UaDataValues& aValues) const
{
    return getArray(m_variant, OpcUaType_DataValue, aValues);
}

OpcUa_StatusCode UaVariant::toVariantArray(UaVariantArray& aValues) const
{
    return getArray(m_variant, OpcUaType_Variant, aValues);
}
