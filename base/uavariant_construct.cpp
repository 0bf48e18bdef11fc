#include "base/uaarrays.h"
#include "base/uabytearray.h"
#include "base/uabytestring.h"
#include "base/uadatavalue.h"
#include "base/uadatetime.h"
#include "base/uaexpandednodeid.h"
#include "base/uaextensionobject.h"
#include "base/uaguid.h"
#include "base/ualocalizedtext.h"
#include "base/uanodeid.h"
#include "base/uaqualifiedname.h"
#include "base/uastatuscode.h"
#include "base/uavariant.h"

// Construction and assignment from all that has a setter.

namespace {

void set(UaVariant& variant, bool value)
{
    variant.setBool(value ? OpcUa_True : OpcUa_False);
}

void set(UaVariant& variant, const UaStatusCode& value)
{
    variant.setStatusCode(value.code());
}

void set(UaVariant& variant, OpcUa_SByte value)
{
    variant.setSByte(value);
}

void set(UaVariant& variant, OpcUa_Byte value)
{
    variant.setByte(value);
}

void set(UaVariant& variant, OpcUa_Int16 value)
{
    variant.setInt16(value);
}

void set(UaVariant& variant, OpcUa_UInt16 value)
{
    variant.setUInt16(value);
}

void set(UaVariant& variant, OpcUa_Int32 value)
{
    variant.setInt32(value);
}

void set(UaVariant& variant, OpcUa_UInt32 value)
{
    variant.setUInt32(value);
}

void set(UaVariant& variant, OpcUa_Int64 value)
{
    variant.setInt64(value);
}

void set(UaVariant& variant, OpcUa_UInt64 value)
{
    variant.setUInt64(value);
}

void set(UaVariant& variant, OpcUa_Float value)
{
    variant.setFloat(value);
}

void set(UaVariant& variant, OpcUa_Double value)
{
    variant.setDouble(value);
}

void set(UaVariant& variant, const UaString& value)
{
    variant.setString(value);
}

void set(UaVariant& variant, const UaDateTime& value)
{
    variant.setDateTime(value);
}

void set(UaVariant& variant, const UaGuid& value)
{
    variant.setGuid(value);
}

void set(UaVariant& variant, const UaByteString& value)
{
    variant.setByteString(value);
}

void set(UaVariant& variant, const UaNodeId& value)
{
    variant.setNodeId(value);
}

void set(UaVariant& variant, const UaExpandedNodeId& value)
{
    variant.setExpandedNodeId(value);
}

void set(UaVariant& variant, const UaQualifiedName& value)
{
    variant.setQualifiedName(value);
}

void set(UaVariant& variant, const UaLocalizedText& value)
{
    variant.setLocalizedText(value);
}

void set(UaVariant& variant, const UaExtensionObject& value)
{
    variant.setExtensionObject(value);
}

void set(UaVariant& variant, const UaDataValue& value)
{
    variant.setDataValue(value);
}

void set(UaVariant& variant, const UaBooleanArray& aValues)
{
    variant.setBoolArray(aValues);
}

void set(UaVariant& variant, const UaSByteArray& aValues)
{
    variant.setSByteArray(aValues);
}

void set(UaVariant& variant, const UaByteArray& aValues)
{
    variant.setByteArray(aValues);
}

void set(UaVariant& variant, const UaInt16Array& aValues)
{
    variant.setInt16Array(aValues);
}

void set(UaVariant& variant, const UaUInt16Array& aValues)
{
    variant.setUInt16Array(aValues);
}

void set(UaVariant& variant, const UaInt32Array& aValues)
{
    variant.setInt32Array(aValues);
}

void set(UaVariant& variant, const UaUInt32Array& aValues)
{
    variant.setUInt32Array(aValues);
}

void set(UaVariant& variant, const UaInt64Array& aValues)
{
    variant.setInt64Array(aValues);
}

void set(UaVariant& variant, const UaUInt64Array& aValues)
{
    variant.setUInt64Array(aValues);
}

void set(UaVariant& variant, const UaFloatArray& aValues)
{
    variant.setFloatArray(aValues);
}

void set(UaVariant& variant, const UaDoubleArray& aValues)
{
    variant.setDoubleArray(aValues);
}

void set(UaVariant& variant, const UaStringArray& aValues)
{
    variant.setStringArray(aValues);
}

void set(UaVariant& variant, const UaDateTimeArray& aValues)
{
    variant.setDateTimeArray(aValues);
}

void set(UaVariant& variant, const UaGuidArray& aValues)
{
    variant.setGuidArray(aValues);
}

void set(UaVariant& variant, const UaByteStringArray& aValues)
{
    variant.setByteStringArray(aValues);
}

void set(UaVariant& variant, const UaNodeIdArray& aValues)
{
    variant.setNodeIdArray(aValues);
}

void set(UaVariant& variant, const UaExpandedNodeIdArray& aValues)
{
    variant.setExpandedNodeIdArray(aValues);
}

void set(UaVariant& variant, const UaStatusCodeArray& aValues)
{
    variant.setStatusCodeArray(aValues);
}

void set(UaVariant& variant, const UaQualifiedNameArray& aValues)
{
    variant.setQualifiedNameArray(aValues);
}

void set(UaVariant& variant, const UaLocalizedTextArray& aValues)
{
    variant.setLocalizedTextArray(aValues);
}

void set(UaVariant& variant, const UaExtensionObjectArray& aValues)
{
    variant.setExtensionObjectArray(aValues);
}

void set(UaVariant& variant, const UaDataValues& aValues)
{
    variant.setDataValueArray(aValues);
}

void set(UaVariant& variant, const UaVariantArray& aValues)
{
    variant.setVariantArray(aValues);
}

void set(UaVariant& variant, UaByteString& value, bool bDetach)
{
    variant.setByteString(value, bDetach);
}

void set(UaVariant& variant, UaExtensionObject& value, bool bDetach)
{
    variant.setExtensionObject(value, bDetach);
}

void set(UaVariant& variant, UaDataValue& value, bool bDetach)
{
    variant.setDataValue(value, bDetach);
}

void set(UaVariant& variant, UaBooleanArray& aValues, bool bDetach)
{
    variant.setBoolArray(aValues, bDetach);
}

void set(UaVariant& variant, UaSByteArray& aValues, bool bDetach)
{
    variant.setSByteArray(aValues, bDetach);
}

void set(UaVariant& variant, UaByteArray& aValues, bool bDetach)
{
    variant.setByteArray(aValues, bDetach);
}

void set(UaVariant& variant, UaInt16Array& aValues, bool bDetach)
{
    variant.setInt16Array(aValues, bDetach);
}

void set(UaVariant& variant, UaUInt16Array& aValues, bool bDetach)
{
    variant.setUInt16Array(aValues, bDetach);
}

void set(UaVariant& variant, UaInt32Array& aValues, bool bDetach)
{
    variant.setInt32Array(aValues, bDetach);
}

void set(UaVariant& variant, UaUInt32Array& aValues, bool bDetach)
{
    variant.setUInt32Array(aValues, bDetach);
}

void set(UaVariant& variant, UaInt64Array& aValues, bool bDetach)
{
    variant.setInt64Array(aValues, bDetach);
}

void set(UaVariant& variant, UaUInt64Array& aValues, bool bDetach)
{
    variant.setUInt64Array(aValues, bDetach);
}

void set(UaVariant& variant, UaFloatArray& aValues, bool bDetach)
{
    variant.setFloatArray(aValues, bDetach);
}

void set(UaVariant& variant, UaDoubleArray& aValues, bool bDetach)
{
    variant.setDoubleArray(aValues, bDetach);
}

void set(UaVariant& variant, UaDateTimeArray& aValues, bool bDetach)
{
    variant.setDateTimeArray(aValues, bDetach);
}

void set(UaVariant& variant, UaGuidArray& aValues, bool bDetach)
{
    variant.setGuidArray(aValues, bDetach);
}

void set(UaVariant& variant, UaByteStringArray& aValues, bool bDetach)
{
    variant.setByteStringArray(aValues, bDetach);
}

void set(UaVariant& variant, UaNodeIdArray& aValues, bool bDetach)
{
    variant.setNodeIdArray(aValues, bDetach);
}

void set(UaVariant& variant, UaExpandedNodeIdArray& aValues, bool bDetach)
{
    variant.setExpandedNodeIdArray(aValues, bDetach);
}

void set(UaVariant& variant, UaStatusCodeArray& aValues, bool bDetach)
{
    variant.setStatusCodeArray(aValues, bDetach);
}

void set(UaVariant& variant, UaExtensionObjectArray& aValues, bool bDetach)
{
    variant.setExtensionObjectArray(aValues, bDetach);
}

void set(UaVariant& variant, UaVariantArray& aValues, bool bDetach)
{
    variant.setVariantArray(aValues, bDetach);
}

} // namespace

template <UaVariantSource T>
UaVariant::UaVariant(const T& value)
    : m_variant()
{
    set(*this, value);
}

template <UaVariantDetachableSource T>
UaVariant::UaVariant(T& value, bool bDetach)
    : m_variant()
{
    set(*this, value, bDetach);
}

template <UaVariantSource T>
UaVariant& UaVariant::operator=(const T& value)
{
    set(*this, value);
    return *this;
}

template UaVariant::UaVariant(const bool&);
template UaVariant::UaVariant(const OpcUa_SByte&);
template UaVariant::UaVariant(const OpcUa_Byte&);
template UaVariant::UaVariant(const OpcUa_Int16&);
template UaVariant::UaVariant(const OpcUa_UInt16&);
template UaVariant::UaVariant(const OpcUa_Int32&);
template UaVariant::UaVariant(const OpcUa_UInt32&);
template UaVariant::UaVariant(const OpcUa_Int64&);
template UaVariant::UaVariant(const OpcUa_UInt64&);
template UaVariant::UaVariant(const OpcUa_Float&);
template UaVariant::UaVariant(const OpcUa_Double&);
template UaVariant::UaVariant(const UaStatusCode&);
template UaVariant::UaVariant(const UaString&);
template UaVariant::UaVariant(const UaDateTime&);
template UaVariant::UaVariant(const UaGuid&);
template UaVariant::UaVariant(const UaByteString&);
template UaVariant::UaVariant(const UaNodeId&);
template UaVariant::UaVariant(const UaExpandedNodeId&);
template UaVariant::UaVariant(const UaQualifiedName&);
template UaVariant::UaVariant(const UaLocalizedText&);
template UaVariant::UaVariant(const UaExtensionObject&);
template UaVariant::UaVariant(const UaDataValue&);
template UaVariant::UaVariant(const UaBooleanArray&);
template UaVariant::UaVariant(const UaSByteArray&);
template UaVariant::UaVariant(const UaByteArray&);
template UaVariant::UaVariant(const UaInt16Array&);
template UaVariant::UaVariant(const UaUInt16Array&);
template UaVariant::UaVariant(const UaInt32Array&);
template UaVariant::UaVariant(const UaUInt32Array&);
template UaVariant::UaVariant(const UaInt64Array&);
template UaVariant::UaVariant(const UaUInt64Array&);
template UaVariant::UaVariant(const UaFloatArray&);
template UaVariant::UaVariant(const UaDoubleArray&);
template UaVariant::UaVariant(const UaStringArray&);
template UaVariant::UaVariant(const UaDateTimeArray&);
template UaVariant::UaVariant(const UaGuidArray&);
template UaVariant::UaVariant(const UaByteStringArray&);
template UaVariant::UaVariant(const UaNodeIdArray&);
template UaVariant::UaVariant(const UaExpandedNodeIdArray&);
template UaVariant::UaVariant(const UaStatusCodeArray&);
template UaVariant::UaVariant(const UaQualifiedNameArray&);
template UaVariant::UaVariant(const UaLocalizedTextArray&);
template UaVariant::UaVariant(const UaExtensionObjectArray&);
template UaVariant::UaVariant(const UaDataValues&);
template UaVariant::UaVariant(const UaVariantArray&);

template UaVariant& UaVariant::operator=(const bool&);
template UaVariant& UaVariant::operator=(const OpcUa_SByte&);
template UaVariant& UaVariant::operator=(const OpcUa_Byte&);
template UaVariant& UaVariant::operator=(const OpcUa_Int16&);
template UaVariant& UaVariant::operator=(const OpcUa_UInt16&);
template UaVariant& UaVariant::operator=(const OpcUa_Int32&);
template UaVariant& UaVariant::operator=(const OpcUa_UInt32&);
template UaVariant& UaVariant::operator=(const OpcUa_Int64&);
template UaVariant& UaVariant::operator=(const OpcUa_UInt64&);
template UaVariant& UaVariant::operator=(const OpcUa_Float&);
template UaVariant& UaVariant::operator=(const OpcUa_Double&);
template UaVariant& UaVariant::operator=(const UaStatusCode&);
template UaVariant& UaVariant::operator=(const UaString&);
template UaVariant& UaVariant::operator=(const UaDateTime&);
template UaVariant& UaVariant::operator=(const UaGuid&);
template UaVariant& UaVariant::operator=(const UaByteString&);
template UaVariant& UaVariant::operator=(const UaNodeId&);
template UaVariant& UaVariant::operator=(const UaExpandedNodeId&);
template UaVariant& UaVariant::operator=(const UaQualifiedName&);
template UaVariant& UaVariant::operator=(const UaLocalizedText&);
template UaVariant& UaVariant::operator=(const UaExtensionObject&);
template UaVariant& UaVariant::operator=(const UaDataValue&);
template UaVariant& UaVariant::operator=(const UaBooleanArray&);
template UaVariant& UaVariant::operator=(const UaSByteArray&);
template UaVariant& UaVariant::operator=(const UaByteArray&);
template UaVariant& UaVariant::operator=(const UaInt16Array&);
template UaVariant& UaVariant::operator=(const UaUInt16Array&);
template UaVariant& UaVariant::operator=(const UaInt32Array&);
template UaVariant& UaVariant::operator=(const UaUInt32Array&);
template UaVariant& UaVariant::operator=(const UaInt64Array&);
template UaVariant& UaVariant::operator=(const UaUInt64Array&);
template UaVariant& UaVariant::operator=(const UaFloatArray&);
template UaVariant& UaVariant::operator=(const UaDoubleArray&);
template UaVariant& UaVariant::operator=(const UaStringArray&);
template UaVariant& UaVariant::operator=(const UaDateTimeArray&);
template UaVariant& UaVariant::operator=(const UaGuidArray&);
template UaVariant& UaVariant::operator=(const UaByteStringArray&);
template UaVariant& UaVariant::operator=(const UaNodeIdArray&);
template UaVariant& UaVariant::operator=(const UaExpandedNodeIdArray&);
template UaVariant& UaVariant::operator=(const UaStatusCodeArray&);
template UaVariant& UaVariant::operator=(const UaQualifiedNameArray&);
template UaVariant& UaVariant::operator=(const UaLocalizedTextArray&);
template UaVariant& UaVariant::operator=(const UaExtensionObjectArray&);
template UaVariant& UaVariant::operator=(const UaDataValues&);
template UaVariant& UaVariant::operator=(const UaVariantArray&);

template UaVariant::UaVariant(UaByteString&, bool);
template UaVariant::UaVariant(UaExtensionObject&, bool);
template UaVariant::UaVariant(UaDataValue&, bool);
template UaVariant::UaVariant(UaBooleanArray&, bool);
template UaVariant::UaVariant(UaSByteArray&, bool);
template UaVariant::UaVariant(UaByteArray&, bool);
template UaVariant::UaVariant(UaInt16Array&, bool);
template UaVariant::UaVariant(UaUInt16Array&, bool);
template UaVariant::UaVariant(UaInt32Array&, bool);
template UaVariant::UaVariant(UaUInt32Array&, bool);
template UaVariant::UaVariant(UaInt64Array&, bool);
template UaVariant::UaVariant(UaUInt64Array&, bool);
template UaVariant::UaVariant(UaFloatArray&, bool);
template UaVariant::UaVariant(UaDoubleArray&, bool);
template UaVariant::UaVariant(UaDateTimeArray&, bool);
template UaVariant::UaVariant(UaGuidArray&, bool);
template UaVariant::UaVariant(UaByteStringArray&, bool);
template UaVariant::UaVariant(UaNodeIdArray&, bool);
template UaVariant::UaVariant(UaExpandedNodeIdArray&, bool);
template UaVariant::UaVariant(UaStatusCodeArray&, bool);
template UaVariant::UaVariant(UaExtensionObjectArray&, bool);
template UaVariant::UaVariant(UaVariantArray&, bool);
