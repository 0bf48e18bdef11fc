#pragma once

#include "platform/types.h"
#include "stack/opcua_recordlayout.h"

#include <string>
#include <vector>

struct OpcUa_DataValue;
struct OpcUa_DiagnosticInfo;
struct OpcUa_ExpandedNodeId;
struct OpcUa_ExtensionObject;
struct OpcUa_LocalizedText;
struct OpcUa_NodeId;
struct OpcUa_Variant;

/// What a protocol analyser must show of a message, told from the records in memory and not from
/// their encoding: the lines of a DissectedPacket.
class DissectorLines
{
public:
    /// The last or only chunk of a message.
    void addChunkHeader(char kind, std::size_t chunkSize, OpcUa_UInt32 sequenceNumber,
                        OpcUa_UInt32 requestId);
    /// The id of the message and its record.
    void addMessage(const OpcUa_RecordLayout& layout, const void* record);

    [[nodiscard]] const std::vector<std::string>& lines() const { return m_lines; }

private:
    /// Indents all lines while it lives.
    class Level;

    void add(const std::string& line);
    void addMask(const std::string& name, unsigned mask, const std::vector<const char*>& bits,
                 unsigned firstBit = 0);
    void addRecord(const OpcUa_RecordLayout& layout, const void* record);
    void addArray(const OpcUa_RecordField& field, const void* block, OpcUa_Int32 count);
    void addField(const OpcUa_RecordField& field, const std::string& label, const void* value);
    void addBits(const std::string& name, OpcUa_UInt32 value, const std::vector<const char*>& bits);
    void addUInt32(const std::string& name, OpcUa_UInt32 value);
    void addValue(OpcUa_Byte type, const std::string& name, const std::string& label,
                  const void* value);
    void addElements(OpcUa_Byte type, const std::string& name, const void* block,
                     OpcUa_Int32 count);
    void addIdentifier(const OpcUa_NodeId& nodeId);
    void addNodeId(const OpcUa_NodeId& nodeId);
    void addExpandedNodeId(const OpcUa_ExpandedNodeId& nodeId);
    void addLocalizedText(const OpcUa_LocalizedText& text);
    void addDiagnosticInfo(const OpcUa_DiagnosticInfo& info);
    void addExtensionObject(const OpcUa_ExtensionObject& object);
    void addDataValue(const OpcUa_DataValue& value);
    void addVariant(const OpcUa_Variant& variant);

    std::vector<std::string> m_lines;
    std::size_t m_depth = 0;
};
