#pragma once

#include "platform/types.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_namespacetable.h"

class UaNodeId;
class UaStringArray;

/// A record of any type, encoded or decoded (OPC 10000-6, 5.2.2.15). The default has neither type nor
/// body.
///
/// Owns its record by value: copies are deep, moves take the content and leave the default. Where
/// memory is short, construction and copy leave the default. Not shared between threads.
class UaExtensionObject
{
public:
    UaExtensionObject() noexcept;

    /// Deep copy of a record; the default for one that OpcUa_ExtensionObject_CopyTo refuses.
    explicit UaExtensionObject(const OpcUa_ExtensionObject& object);
    UaExtensionObject(const UaExtensionObject& other);
    UaExtensionObject(UaExtensionObject&& other) noexcept;
    ~UaExtensionObject();

    UaExtensionObject& operator=(const OpcUa_ExtensionObject& object);
    UaExtensionObject& operator=(const UaExtensionObject& other);
    UaExtensionObject& operator=(UaExtensionObject&& other) noexcept;

    /// Makes the default.
    void clear();

    /// What the body holds.
    [[nodiscard]] OpcUa_ExtensionObjectEncoding encoding() const noexcept;

    /// The type id of an encoded body, binary or XML; otherwise the null node id.
    [[nodiscard]] UaNodeId encodingTypeId() const;

    /// The data type of a decoded record by its row: the row's numeric id in namespace 0 when the row
    /// is of the standard's namespace, otherwise in the namespace of the object's own type id. The
    /// null node id when nothing is decoded, or when such an own type id is null.
    [[nodiscard]] UaNodeId dataTypeId() const;

    /// The same by a table of namespace URIs, in which the row's URI, or the standard's for a row
    /// without one, gives the namespace index by its position; the null node id when it isn't there.
    /// An empty table makes this the form without a table.
    [[nodiscard]] UaNodeId dataTypeId(const UaStringArray& namespaceUris) const;

    /// Both for a record, without a copy of it.
    [[nodiscard]] static UaNodeId encodingTypeId(const OpcUa_ExtensionObject& object);
    [[nodiscard]] static UaNodeId dataTypeId(const OpcUa_ExtensionObject& object);
    [[nodiscard]] static UaNodeId dataTypeId(const OpcUa_ExtensionObject& object,
                                             const UaStringArray& namespaceUris);

    /// The record, never null; valid until the object changes or dies.
    [[nodiscard]] const OpcUa_ExtensionObject* toOpcUaExtensionObject() const noexcept;

    /// Takes the content of a record over, which is left initialised.
    void attach(OpcUa_ExtensionObject& object) noexcept;

    /// Deep copy into an initialised record, which is cleared first. `BadInvalidArgument` for a null
    /// pointer, otherwise the failures of OpcUa_ExtensionObject_CopyTo; the record is cleared then.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_ExtensionObject* pTarget) const;

    /// Moves the content into an initialised record, which is cleared first, and leaves the default.
    /// `BadInvalidArgument` for a null pointer; the object stays as it was then.
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_ExtensionObject* pTarget) noexcept;

    /// OpcUa_ExtensionObject_Compare.
    [[nodiscard]] bool operator==(const UaExtensionObject& other) const;

private:
    OpcUa_ExtensionObject m_object;
};

/// Position of a URI in a table of namespace URIs by exact comparison, or -1.
[[nodiscard]] OpcUa_Int32 UaNamespaceUris_Find(const UaStringArray& namespaceUris, const char* uri);

/// The URI of the standard's own namespace, which has index 0 in every server.
inline constexpr const char* UaNamespaceUri_Standard = OpcUa_NamespaceTable_StandardUri;
