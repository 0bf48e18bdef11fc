#pragma once

#include "platform/types.h"
#include "stack/opcua_recordlayout.h"
#include "stack/opcua_variant.h"

#include <vector>

/// The layouts of the requests and responses of all services.
[[nodiscard]] const std::vector<const OpcUa_RecordLayout*>& messageLayouts();

/// The layouts of all other known types, but for three that tshark misreads.
[[nodiscard]] const std::vector<const OpcUa_RecordLayout*>& structureLayouts();

/// Fills records with values that all differ, so that two fields in each other's place show. Kinds of
/// values take turns: node ids in all their forms, null, empty and long texts, variants of every type
/// and shape, extension objects with and without a body.
class MessageFiller
{
public:
    /// Different starts give different kinds to the same field.
    explicit MessageFiller(OpcUa_UInt32 start)
        : m_next(start)
    {
    }

    /// Fills an initialised record.
    void fillRecord(const OpcUa_RecordLayout& layout, void* record);

    /// Fills an initialised variant with a value of a built-in type; OpcUaType_Null leaves it empty.
    void fillVariant(OpcUa_Variant& variant, OpcUa_Byte type, OpcUa_Byte arrayType);

    /// Turns an initialised extension object into one with a filled record.
    void fillExtensionObject(OpcUa_ExtensionObject& object, const OpcUa_RecordLayout& layout);

private:
    OpcUa_UInt32 take() { return m_next++; }
    /// Takes turns through 0 to `count` - 1.
    OpcUa_UInt32 choose(OpcUa_UInt32 count) { return take() % count; }
    void* makeBlock(OpcUa_Byte type, OpcUa_Int32 count);
    void fillArray(const OpcUa_RecordField& field, void* record);
    void fillField(const OpcUa_RecordField& field, void* value);
    void fillBuiltIn(OpcUa_Byte type, void* value);
    void fillString(OpcUa_String& string);
    void fillByteString(OpcUa_ByteString& bytes);
    void fillNodeId(OpcUa_NodeId& nodeId);
    void fillExpandedNodeId(OpcUa_ExpandedNodeId& nodeId);
    void fillGuid(OpcUa_Guid& guid);
    void fillLocalizedText(OpcUa_LocalizedText& text);
    void fillAnyExtensionObject(OpcUa_ExtensionObject& object);
    void fillDataValue(OpcUa_DataValue& value);
    void fillAnyVariant(OpcUa_Variant& variant);
    void fillDiagnosticInfo(OpcUa_DiagnosticInfo& info);

    OpcUa_UInt32 m_next;
    /// Values inside of values; beyond a few they stay empty.
    OpcUa_UInt32 m_depth = 0;
};
