#include "base/uavariant.h"

#include "base/uaarrays.h"
#include "base/uaextensionobject.h"
#include "base/uanodeid.h"
#include "base/uavariantparts.h"
#include "stack/opcua_bytestring.h"

#include <cstddef>
#include <cstring>

using namespace UaVariantParts;

namespace {

OpcUa_Variant byteAt(const OpcUa_ByteString& bytes, OpcUa_UInt32 index)
{
    OpcUa_Variant result = null();
    if (bytes.Data != nullptr && OpcUa_Int64{index} < bytes.Length) {
        result.Datatype = OpcUaType_Byte;
        result.Value.Byte = bytes.Data[index];
    }
    return result;
}

/// An element as a scalar variant without a copy of its own: what it points at stays the array's.
OpcUa_Variant shallowElement(const OpcUa_Variant& array, OpcUa_UInt32 index)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(array.Datatype);
    const void* element = static_cast<const char*>(array.Value.Array.Elements) +
                          static_cast<std::size_t>(index) * traits.Size;
    OpcUa_Variant result = null();
    result.Datatype = array.Datatype;
    if (traits.IsByPointer) {
        std::memcpy(&result.Value, &element, sizeof(element));
    } else {
        std::memcpy(&result.Value, element, traits.Size);
    }
    return result;
}

} // namespace

UaVariant& UaVariant::operator=(const OpcUa_Variant& value)
{
    static_cast<void>(OpcUa_Variant_CopyTo(&value, &m_variant));
    return *this;
}

UaVariant& UaVariant::operator=(const UaVariant& other)
{
    if (this != &other) {
        *this = other.m_variant;
    }
    return *this;
}

UaVariant& UaVariant::operator=(UaVariant&& other) noexcept
{
    if (this != &other) {
        attach(other.m_variant);
    }
    return *this;
}

OpcUa_Int32 UaVariant::arraySize() const
{
    if (::isArray(m_variant)) {
        return m_variant.Value.Array.Length;
    }
    return ::isMatrix(m_variant) ? matrixSize(m_variant.Value.Matrix) : -1;
}

void UaVariant::dimensions(UaInt32Array& aDimensions) const
{
    if (::isArray(m_variant)) {
        aDimensions.attach(1, &m_variant.Value.Array.Length);
    } else if (::isMatrix(m_variant)) {
        aDimensions.attach(m_variant.Value.Matrix.NoOfDimensions,
                           m_variant.Value.Matrix.Dimensions);
    } else {
        aDimensions.clear();
    }
}

OpcUa_Variant UaVariant::operator[](OpcUa_UInt32 index) const
{
    if (isScalarOf(m_variant, OpcUaType_ByteString)) {
        return byteAt(m_variant.Value.ByteString, index);
    }
    OpcUa_Variant result = null();
    const bool isElement = ::isArray(m_variant) && m_variant.Datatype <= OpcUaType_DataValue &&
                           OpcUa_Int64{index} < elementsOf(m_variant).count;
    if (isElement) {
        const OpcUa_Variant element = shallowElement(m_variant, index);
        static_cast<void>(OpcUa_Variant_CopyTo(&element, &result));
    }
    return result;
}

UaNodeId UaVariant::encodingTypeId() const
{
    const OpcUa_ExtensionObject* object = extensionObjectOf(m_variant);
    return object == nullptr ? UaNodeId() : UaExtensionObject::encodingTypeId(*object);
}

UaNodeId UaVariant::dataTypeId() const
{
    if (m_variant.Datatype != OpcUaType_ExtensionObject) {
        return UaNodeId(m_variant.Datatype);
    }
    const OpcUa_ExtensionObject* object = extensionObjectOf(m_variant);
    return object == nullptr ? UaNodeId() : UaExtensionObject::dataTypeId(*object);
}

UaNodeId UaVariant::dataTypeId(const UaStringArray& namespaceUris) const
{
    if (namespaceUris.length() == 0) {
        return dataTypeId();
    }
    if (m_variant.Datatype != OpcUaType_ExtensionObject) {
        const OpcUa_Int32 index = UaNamespaceUris_Find(namespaceUris, UaNamespaceUri_Standard);
        return index < 0 ? UaNodeId()
                         : UaNodeId(m_variant.Datatype, static_cast<OpcUa_UInt16>(index));
    }
    const OpcUa_ExtensionObject* object = extensionObjectOf(m_variant);
    return object == nullptr ? UaNodeId() : UaExtensionObject::dataTypeId(*object, namespaceUris);
}

void UaVariant::attach(OpcUa_Variant& value) noexcept
{
    OpcUa_Variant taken = value;
    OpcUa_Variant_Initialize(&value);
    moveTo(m_variant, taken);
}

void UaVariant::detach(OpcUa_Variant* pTarget) noexcept
{
    if (pTarget != nullptr) {
        *pTarget = m_variant;
        OpcUa_Variant_Initialize(&m_variant);
    }
}
