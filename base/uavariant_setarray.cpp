#include "base/uaarrays.h"
#include "base/uabytearray.h"
#include "base/uavariant.h"
#include "base/uavariantparts.h"

// Setters of arrays.

namespace {

template <typename Array>
void copyArray(OpcUa_Variant& variant, OpcUa_Byte type, const Array& array)
{
    static_cast<void>(
        UaBuiltInArray_CopyToVariant(type, array.length(), array.rawArray(), variant));
}

template <typename Array>
void moveArray(OpcUa_Variant& variant, OpcUa_Byte type, Array& array)
{
    const OpcUa_Int32 length = array.length();
    UaBuiltInArray_MoveToVariant(type, length, array.detach(), variant);
}

void copyArray(OpcUa_Variant& variant, OpcUa_Byte type, const UaByteArray& array)
{
    static_cast<void>(UaBuiltInArray_CopyToVariant(type, array.size(), array.data(), variant));
}

/// The block moves unless other handles share it.
void moveArray(OpcUa_Variant& variant, OpcUa_Byte type, UaByteArray& array)
{
    OpcUa_ByteString bytes;
    OpcUa_ByteString_Initialize(&bytes);
    if (OpcUa_IsBad(array.detach(&bytes))) {
        OpcUa_Variant_Clear(&variant);
        return;
    }
    UaBuiltInArray_MoveToVariant(type, bytes.Length, bytes.Data, variant);
}

template <typename Array>
void setArray(OpcUa_Variant& variant, OpcUa_Byte type, Array& array, bool bDetach)
{
    if (bDetach) {
        moveArray(variant, type, array);
    } else {
        copyArray(variant, type, array);
    }
}

} // namespace

void UaVariant::setBoolArray(const UaBooleanArray& aValues)
{
    copyArray(m_variant, OpcUaType_Boolean, aValues);
}

void UaVariant::setBoolArray(UaBooleanArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_Boolean, aValues, bDetach);
}

void UaVariant::setSByteArray(const UaSByteArray& aValues)
{
    copyArray(m_variant, OpcUaType_SByte, aValues);
}

void UaVariant::setSByteArray(UaSByteArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_SByte, aValues, bDetach);
}

void UaVariant::setByteArray(const UaByteArray& aValues)
{
    copyArray(m_variant, OpcUaType_Byte, aValues);
}

void UaVariant::setByteArray(UaByteArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_Byte, aValues, bDetach);
}

void UaVariant::setInt16Array(const UaInt16Array& aValues)
{
    copyArray(m_variant, OpcUaType_Int16, aValues);
}

void UaVariant::setInt16Array(UaInt16Array& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_Int16, aValues, bDetach);
}

void UaVariant::setUInt16Array(const UaUInt16Array& aValues)
{
    copyArray(m_variant, OpcUaType_UInt16, aValues);
}

void UaVariant::setUInt16Array(UaUInt16Array& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_UInt16, aValues, bDetach);
}

void UaVariant::setInt32Array(const UaInt32Array& aValues)
{
    copyArray(m_variant, OpcUaType_Int32, aValues);
}

void UaVariant::setInt32Array(UaInt32Array& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_Int32, aValues, bDetach);
}

void UaVariant::setUInt32Array(const UaUInt32Array& aValues)
{
    copyArray(m_variant, OpcUaType_UInt32, aValues);
}

void UaVariant::setUInt32Array(UaUInt32Array& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_UInt32, aValues, bDetach);
}

void UaVariant::setInt64Array(const UaInt64Array& aValues)
{
    copyArray(m_variant, OpcUaType_Int64, aValues);
}

void UaVariant::setInt64Array(UaInt64Array& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_Int64, aValues, bDetach);
}

void UaVariant::setUInt64Array(const UaUInt64Array& aValues)
{
    copyArray(m_variant, OpcUaType_UInt64, aValues);
}

void UaVariant::setUInt64Array(UaUInt64Array& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_UInt64, aValues, bDetach);
}

void UaVariant::setFloatArray(const UaFloatArray& aValues)
{
    copyArray(m_variant, OpcUaType_Float, aValues);
}

void UaVariant::setFloatArray(UaFloatArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_Float, aValues, bDetach);
}

void UaVariant::setDoubleArray(const UaDoubleArray& aValues)
{
    copyArray(m_variant, OpcUaType_Double, aValues);
}

void UaVariant::setDoubleArray(UaDoubleArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_Double, aValues, bDetach);
}

void UaVariant::setStringArray(const UaStringArray& aValues)
{
    copyArray(m_variant, OpcUaType_String, aValues);
}

void UaVariant::setDateTimeArray(const UaDateTimeArray& aValues)
{
    copyArray(m_variant, OpcUaType_DateTime, aValues);
}

void UaVariant::setDateTimeArray(UaDateTimeArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_DateTime, aValues, bDetach);
}

void UaVariant::setGuidArray(const UaGuidArray& aValues)
{
    copyArray(m_variant, OpcUaType_Guid, aValues);
}

void UaVariant::setGuidArray(UaGuidArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_Guid, aValues, bDetach);
}

void UaVariant::setByteStringArray(const UaByteStringArray& aValues)
{
    copyArray(m_variant, OpcUaType_ByteString, aValues);
}

void UaVariant::setByteStringArray(UaByteStringArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_ByteString, aValues, bDetach);
}

void UaVariant::setXmlElementArray(const UaByteStringArray& aValues)
{
    copyArray(m_variant, OpcUaType_XmlElement, aValues);
}

void UaVariant::setXmlElementArray(UaByteStringArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_XmlElement, aValues, bDetach);
}

void UaVariant::setNodeIdArray(const UaNodeIdArray& aValues)
{
    copyArray(m_variant, OpcUaType_NodeId, aValues);
}

void UaVariant::setNodeIdArray(UaNodeIdArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_NodeId, aValues, bDetach);
}

void UaVariant::setExpandedNodeIdArray(const UaExpandedNodeIdArray& aValues)
{
    copyArray(m_variant, OpcUaType_ExpandedNodeId, aValues);
}

void UaVariant::setExpandedNodeIdArray(UaExpandedNodeIdArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_ExpandedNodeId, aValues, bDetach);
}

void UaVariant::setStatusCodeArray(const UaStatusCodeArray& aValues)
{
    copyArray(m_variant, OpcUaType_StatusCode, aValues);
}

void UaVariant::setStatusCodeArray(UaStatusCodeArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_StatusCode, aValues, bDetach);
}

void UaVariant::setQualifiedNameArray(const UaQualifiedNameArray& aValues)
{
    copyArray(m_variant, OpcUaType_QualifiedName, aValues);
}

void UaVariant::setLocalizedTextArray(const UaLocalizedTextArray& aValues)
{
    copyArray(m_variant, OpcUaType_LocalizedText, aValues);
}

void UaVariant::setExtensionObjectArray(const UaExtensionObjectArray& aValues)
{
    copyArray(m_variant, OpcUaType_ExtensionObject, aValues);
}

void UaVariant::setExtensionObjectArray(UaExtensionObjectArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_ExtensionObject, aValues, bDetach);
}

void UaVariant::setDataValueArray(const UaDataValues& aValues)
{
    copyArray(m_variant, OpcUaType_DataValue, aValues);
}

void UaVariant::setVariantArray(const UaVariantArray& aValues)
{
    copyArray(m_variant, OpcUaType_Variant, aValues);
}

void UaVariant::setVariantArray(UaVariantArray& aValues, bool bDetach)
{
    setArray(m_variant, OpcUaType_Variant, aValues, bDetach);
}
