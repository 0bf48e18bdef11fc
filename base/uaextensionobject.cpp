#include "base/uaextensionobject.h"

#include "base/uaarrays.h"
#include "base/uanodeid.h"
#include "platform/status.h"
#include "stack/opcua_encodeabletype.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace {

/// The row of a decoded record, or null.
const OpcUa_EncodeableType* rowOf(const OpcUa_ExtensionObject& object)
{
    return object.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject
               ? object.Body.EncodeableObject.Type
               : nullptr;
}

bool isOfStandardNamespace(const OpcUa_EncodeableType& row)
{
    return row.NamespaceUri == nullptr || *row.NamespaceUri == '\0';
}

} // namespace

UaExtensionObject::UaExtensionObject() noexcept
{
    OpcUa_ExtensionObject_Initialize(&m_object);
}

UaExtensionObject::UaExtensionObject(const OpcUa_ExtensionObject& object)
    : UaExtensionObject()
{
    static_cast<void>(OpcUa_ExtensionObject_CopyTo(&object, &m_object));
}

UaExtensionObject::UaExtensionObject(const UaExtensionObject& other)
    : UaExtensionObject(other.m_object)
{
}

UaExtensionObject::UaExtensionObject(UaExtensionObject&& other) noexcept
    : m_object(other.m_object)
{
    OpcUa_ExtensionObject_Initialize(&other.m_object);
}

UaExtensionObject::~UaExtensionObject()
{
    OpcUa_ExtensionObject_Clear(&m_object);
}

UaExtensionObject& UaExtensionObject::operator=(const OpcUa_ExtensionObject& object)
{
    static_cast<void>(OpcUa_ExtensionObject_CopyTo(&object, &m_object));
    return *this;
}

UaExtensionObject& UaExtensionObject::operator=(const UaExtensionObject& other)
{
    if (this != &other) {
        *this = other.m_object;
    }
    return *this;
}

UaExtensionObject& UaExtensionObject::operator=(UaExtensionObject&& other) noexcept
{
    if (this != &other) {
        attach(other.m_object);
    }
    return *this;
}

void UaExtensionObject::clear()
{
    OpcUa_ExtensionObject_Clear(&m_object);
}

OpcUa_ExtensionObjectEncoding UaExtensionObject::encoding() const noexcept
{
    return m_object.Encoding;
}

UaNodeId UaExtensionObject::encodingTypeId() const
{
    return encodingTypeId(m_object);
}

UaNodeId UaExtensionObject::dataTypeId() const
{
    return dataTypeId(m_object);
}

UaNodeId UaExtensionObject::dataTypeId(const UaStringArray& namespaceUris) const
{
    return dataTypeId(m_object, namespaceUris);
}

UaNodeId UaExtensionObject::encodingTypeId(const OpcUa_ExtensionObject& object)
{
    const bool isEncoded = object.Encoding == OpcUa_ExtensionObjectEncoding_Binary ||
                           object.Encoding == OpcUa_ExtensionObjectEncoding_Xml;
    return isEncoded ? UaNodeId(object.TypeId.NodeId) : UaNodeId();
}

UaNodeId UaExtensionObject::dataTypeId(const OpcUa_ExtensionObject& object)
{
    const OpcUa_EncodeableType* row = rowOf(object);
    if (row == nullptr) {
        return {};
    }
    if (isOfStandardNamespace(*row)) {
        return UaNodeId(row->TypeId);
    }
    const OpcUa_NodeId& ownTypeId = object.TypeId.NodeId;
    return OpcUa_NodeId_IsNull(&ownTypeId) ? UaNodeId()
                                           : UaNodeId(row->TypeId, ownTypeId.NamespaceIndex);
}

UaNodeId UaExtensionObject::dataTypeId(const OpcUa_ExtensionObject& object,
                                       const UaStringArray& namespaceUris)
{
    const OpcUa_EncodeableType* row = rowOf(object);
    if (row == nullptr || namespaceUris.length() == 0) {
        return dataTypeId(object);
    }
    const OpcUa_Int32 index = UaNamespaceUris_Find(
        namespaceUris, isOfStandardNamespace(*row) ? UaNamespaceUri_Standard : row->NamespaceUri);
    return index < 0 ? UaNodeId() : UaNodeId(row->TypeId, static_cast<OpcUa_UInt16>(index));
}

const OpcUa_ExtensionObject* UaExtensionObject::toOpcUaExtensionObject() const noexcept
{
    return &m_object;
}

void UaExtensionObject::attach(OpcUa_ExtensionObject& object) noexcept
{
    const OpcUa_ExtensionObject taken = object;
    OpcUa_ExtensionObject_Initialize(&object);
    OpcUa_ExtensionObject_Clear(&m_object);
    m_object = taken;
}

OpcUa_StatusCode UaExtensionObject::copyTo(OpcUa_ExtensionObject* pTarget) const
{
    return OpcUa_ExtensionObject_CopyTo(&m_object, pTarget);
}

OpcUa_StatusCode UaExtensionObject::detach(OpcUa_ExtensionObject* pTarget) noexcept
{
    if (pTarget == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_ExtensionObject_Clear(pTarget);
    *pTarget = m_object;
    OpcUa_ExtensionObject_Initialize(&m_object);
    return OpcUa_Good;
}

bool UaExtensionObject::operator==(const UaExtensionObject& other) const
{
    return OpcUa_ExtensionObject_Compare(&m_object, &other.m_object) == 0;
}

OpcUa_Int32 UaNamespaceUris_Find(const UaStringArray& namespaceUris, const char* uri)
{
    // A position behind the largest namespace index is none.
    const OpcUa_Int32 limit =
        std::min<OpcUa_Int32>(namespaceUris.length(), std::numeric_limits<OpcUa_UInt16>::max() + 1);
    for (OpcUa_Int32 i = 0; i < limit; ++i) {
        const OpcUa_String& candidate = namespaceUris[static_cast<OpcUa_UInt32>(i)];
        if (!OpcUa_String_IsNull(&candidate) &&
            std::string_view(OpcUa_String_GetRawString(&candidate),
                             OpcUa_String_StrSize(&candidate)) == uri) {
            return i;
        }
    }
    return -1;
}
