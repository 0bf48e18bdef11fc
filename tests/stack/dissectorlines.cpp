#include "tests/stack/dissectorlines.h"

#include "stack/opcua_builtintype.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_enumeratedtype.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_qualifiedname.h"
#include "stack/opcua_recordfields.h"
#include "tests/stack/capturefile.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace {

template <typename... Arguments>
std::string formatted(const char* format, Arguments... arguments)
{
    std::array<char, 200> text{};
    std::snprintf(text.data(), text.size(), format, arguments...);
    return text.data();
}

std::string shown(const OpcUa_String& string)
{
    if (string.strContent == nullptr) {
        return "[OpcUa Null String]";
    }
    return string.uLength == 0 ? "[OpcUa Empty String]"
                               : std::string(string.strContent, string.uLength);
}

std::string shown(const OpcUa_ByteString& bytes)
{
    if (bytes.Length < 0) {
        return "[OpcUa Null ByteString]";
    }
    if (bytes.Length == 0) {
        return "[OpcUa Empty ByteString]";
    }
    std::string text;
    for (OpcUa_Int32 i = 0; i < bytes.Length; ++i) {
        text += formatted(i == 0 ? "%02x" : ":%02x", static_cast<unsigned>(bytes.Data[i]));
    }
    return text;
}

std::string shown(const OpcUa_Guid& guid)
{
    const auto& rest = guid.Data4;
    return formatted("%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x", guid.Data1, guid.Data2,
                     guid.Data3, rest[0], rest[1], rest[2], rest[3], rest[4], rest[5], rest[6],
                     rest[7]);
}

std::string shown(OpcUa_DateTime time)
{
    constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    constexpr OpcUa_Int64 secondsAtUnixEpoch = 11644473600;
    const OpcUa_UInt64 ticks = OpcUa_DateTime_ToTicks(time);
    if (ticks == 0) {
        return "Jan  1, 1970 00:00:00.000000000 UTC"; // as the analyser shows no time at all
    }
    const std::chrono::seconds seconds(static_cast<OpcUa_Int64>(ticks / 10000000) -
                                       secondsAtUnixEpoch);
    const auto days = std::chrono::floor<std::chrono::days>(seconds);
    const std::chrono::year_month_day date{std::chrono::sys_days(days)};
    const std::chrono::hh_mm_ss clock(seconds - days);
    return formatted(
        "%s %2u, %d %02d:%02d:%02d.%09u UTC", months[static_cast<unsigned>(date.month()) - 1],
        static_cast<unsigned>(date.day()), static_cast<int>(date.year()),
        static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
        static_cast<int>(clock.seconds().count()), static_cast<unsigned>(ticks % 10000000 * 100));
}

template <typename T>
const T& as(const void* value)
{
    return *static_cast<const T*>(value);
}

constexpr const char* typeNames[] = {
    "Null",          "Boolean",       "SByte",           "Byte",           "Int16",
    "UInt16",        "Int32",         "UInt32",          "Int64",          "UInt64",
    "Float",         "Double",        "String",          "DateTime",       "Guid",
    "ByteString",    "XmlElement",    "NodeId",          "ExpandedNodeId", "StatusCode",
    "QualifiedName", "LocalizedText", "ExtensionObject", "DataValue",      "Variant",
    "DiagnosticInfo"};

std::string typeNameOf(const OpcUa_RecordField& field)
{
    switch (field.Type) {
    case OpcUa_FieldType_Record:
        return field.Record->Type->TypeName;
    case OpcUa_FieldType_Enumeration:
        return field.Enumeration->TypeName;
    default:
        return typeNames[field.Type];
    }
}

/// The shortest of the encodings that an id can have.
unsigned encodingOf(const OpcUa_NodeId& nodeId)
{
    if (nodeId.IdentifierType != OpcUa_IdentifierType_Numeric) {
        return nodeId.IdentifierType + 2u;
    }
    const OpcUa_UInt32 number = nodeId.Identifier.Numeric;
    if (nodeId.NamespaceIndex == 0 && number <= 255) {
        return 0;
    }
    return nodeId.NamespaceIndex <= 255 && number <= 65535 ? 1 : 2;
}

const OpcUa_RecordLayout& layoutOf(const OpcUa_EncodeableType& type)
{
    for (const auto* layout = OpcUa_RecordLayouts; *layout != nullptr; ++layout) {
        if ((*layout)->Type == &type) {
            return **layout;
        }
    }
    throw std::logic_error("no layout");
}

} // namespace

class DissectorLines::Level
{
public:
    explicit Level(DissectorLines& lines)
        : m_lines(lines)
    {
        ++m_lines.m_depth;
    }
    ~Level() { --m_lines.m_depth; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

private:
    DissectorLines& m_lines;
};

void DissectorLines::add(const std::string& line)
{
    m_lines.push_back(std::string(2 * m_depth, ' ') + line);
}

void DissectorLines::addMask(const std::string& name, unsigned mask,
                             const std::vector<const char*>& bits, unsigned firstBit)
{
    add(formatted("opcua.%s.mask=0x%02x", name.c_str(), mask));
    const Level level(*this);
    for (std::size_t i = 0; i < bits.size(); ++i) {
        add(formatted("opcua.%s.%s=%u", name.c_str(), bits[i], mask >> (firstBit + i) & 1));
    }
}

void DissectorLines::addChunkHeader(char kind, std::size_t chunkSize, OpcUa_UInt32 sequenceNumber,
                                    OpcUa_UInt32 requestId)
{
    add("proto opcua");
    const Level level(*this);
    add("opcua.transport.type=MSG");
    add(std::string("opcua.transport.chunk=") + kind);
    add(formatted("opcua.transport.size=%zu", chunkSize));
    add(formatted("opcua.transport.scid=%u", CaptureFile::channelId));
    add(formatted("opcua.security.tokenid=%u", CaptureFile::tokenId));
    add(formatted("opcua.security.seq=%u", sequenceNumber));
    add(formatted("opcua.security.rqid=%u", requestId));
}

void DissectorLines::addMessage(const OpcUa_RecordLayout& layout, const void* record)
{
    const Level level(*this);
    add("OpcUa Service : Encodeable Object");
    const Level inside(*this);
    add("TypeId : ExpandedNodeId");
    {
        const Level ids(*this);
        add("opcua.servicenodeid.encodingmask=0x01");
        add("opcua.servicenodeid.nsid=0");
        add(formatted("opcua.servicenodeid.numeric=%u", layout.Type->BinaryEncodingTypeId));
    }
    add(layout.Type->TypeName);
    addRecord(layout, record);
}

void DissectorLines::addRecord(const OpcUa_RecordLayout& layout, const void* record)
{
    const Level level(*this);
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        if (field.IsArray) {
            add(std::string(field.Name) + ": Array of " + typeNameOf(field));
            addArray(field, OpcUa_Field_Block(field, record), OpcUa_Field_Count(field, record));
        } else {
            addField(field, field.Name, OpcUa_Field_At(record, field.Offset));
        }
    }
}

void DissectorLines::addArray(const OpcUa_RecordField& field, const void* block, OpcUa_Int32 count)
{
    const Level level(*this);
    add(formatted("opcua.variant.ArraySize=%d", count));
    const std::size_t size = field.Type == OpcUa_FieldType_Record
                                 ? field.Record->Size
                                 : OpcUa_BuiltInType_GetTraits(field.BuiltInType)->Size;
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        addField(field, formatted("[%d]", i),
                 static_cast<const char*>(block) + static_cast<std::size_t>(i) * size);
    }
}

void DissectorLines::addField(const OpcUa_RecordField& field, const std::string& label,
                              const void* value)
{
    if (field.Type == OpcUa_FieldType_Record) {
        add(label + ": " + field.Record->Type->TypeName);
        addRecord(*field.Record, value);
    } else if (field.Type == OpcUa_FieldType_Enumeration) {
        add(formatted("opcua.%s=0x%08x", field.Enumeration->TypeName,
                      static_cast<unsigned>(as<OpcUa_Int32>(value))));
    } else {
        addValue(field.Type, std::string("opcua.") + field.Name, label, value);
    }
}

void DissectorLines::addUInt32(const std::string& name, OpcUa_UInt32 value)
{
    struct Mask
    {
        std::string_view field;
        const char* name;
        std::vector<const char*> bits;
    };
    static const Mask masks[] = {
        {"opcua.ReturnDiagnostics",
         "returndiag",
         {"servicelevel.symbolicid", "servicelevel.localizedtext", "servicelevel.additionalinfo",
          "servicelevel.innerstatuscode", "servicelevel.innerdiagnostics",
          "operationlevel.symbolicid", "operationlevel.localizedtext",
          "operationlevel.additionalinfo", "operationlevel.innerstatuscode",
          "operationlevel.innerdiagnostics"}},
        {"opcua.NodeClassMask",
         "nodeclassmask",
         {"object", "variable", "method", "objecttype", "variabletype", "referencetype", "datatype",
          "view"}},
        {"opcua.ResultMask",
         "resultmask",
         {"referencetype", "isforward", "nodeclass", "browsename", "displayname",
          "typedefinition"}}};
    for (const Mask& mask : masks) {
        if (name == mask.field) {
            addBits(mask.name, value, mask.bits);
            return;
        }
    }
    const bool isHexadecimal = name == "opcua.AttributeId" || name == "opcua.DeadbandType";
    add(name + formatted(isHexadecimal ? "=0x%08x" : "=%u", value));
}

void DissectorLines::addBits(const std::string& name, OpcUa_UInt32 value,
                             const std::vector<const char*>& bits)
{
    add(formatted("opcua.%s=0x%08x", name.c_str(), value));
    const Level level(*this);
    for (std::size_t i = 0; i < bits.size(); ++i) {
        add(formatted("opcua.%s.%s=%u", name.c_str(), bits[i], value >> i & 1));
    }
}

void DissectorLines::addValue(OpcUa_Byte type, const std::string& name, const std::string& label,
                              const void* value)
{
    switch (type) {
    case OpcUaType_Boolean:
        add(name + formatted("=%d", as<OpcUa_Boolean>(value)));
        return;
    case OpcUaType_SByte:
        add(name + formatted("=%d", as<OpcUa_SByte>(value)));
        return;
    case OpcUaType_Byte:
        add(name + formatted("=%u", as<OpcUa_Byte>(value)));
        return;
    case OpcUaType_Int16:
        add(name + formatted("=%d", as<OpcUa_Int16>(value)));
        return;
    case OpcUaType_UInt16:
        add(name + formatted("=%u", as<OpcUa_UInt16>(value)));
        return;
    case OpcUaType_Int32:
        add(name + formatted("=%d", as<OpcUa_Int32>(value)));
        return;
    case OpcUaType_UInt32:
        addUInt32(name, as<OpcUa_UInt32>(value));
        return;
    case OpcUaType_Int64:
        add(name + "=" + std::to_string(as<OpcUa_Int64>(value)));
        return;
    case OpcUaType_UInt64:
        add(name + "=" + std::to_string(as<OpcUa_UInt64>(value)));
        return;
    case OpcUaType_Float:
        add(name + formatted("=%.9g", static_cast<double>(as<OpcUa_Float>(value))));
        return;
    case OpcUaType_Double:
        add(name + formatted("=%.17g", as<OpcUa_Double>(value)));
        return;
    case OpcUaType_String:
        add(name + "=" + shown(as<OpcUa_String>(value)));
        return;
    case OpcUaType_DateTime:
        add(name + "=" + shown(as<OpcUa_DateTime>(value)));
        return;
    case OpcUaType_Guid:
        add(name + "=" + shown(as<OpcUa_Guid>(value)));
        return;
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        add(name + "=" + shown(as<OpcUa_ByteString>(value)));
        return;
    case OpcUaType_StatusCode:
        add(name + formatted("=0x%08x", as<OpcUa_StatusCode>(value)));
        return;
    default:
        break;
    }
    add(label + ": " + typeNames[type]);
    const Level level(*this);
    switch (type) {
    case OpcUaType_NodeId:
        addNodeId(as<OpcUa_NodeId>(value));
        break;
    case OpcUaType_ExpandedNodeId:
        addExpandedNodeId(as<OpcUa_ExpandedNodeId>(value));
        break;
    case OpcUaType_QualifiedName:
        add(formatted("opcua.qualname.Id=%u", as<OpcUa_QualifiedName>(value).NamespaceIndex));
        add("opcua.qualname.Name=" + shown(as<OpcUa_QualifiedName>(value).Name));
        break;
    case OpcUaType_LocalizedText:
        addLocalizedText(as<OpcUa_LocalizedText>(value));
        break;
    case OpcUaType_ExtensionObject:
        addExtensionObject(as<OpcUa_ExtensionObject>(value));
        break;
    case OpcUaType_DataValue:
        addDataValue(as<OpcUa_DataValue>(value));
        break;
    case OpcUaType_Variant:
        addVariant(as<OpcUa_Variant>(value));
        break;
    case OpcUaType_DiagnosticInfo:
        addDiagnosticInfo(as<OpcUa_DiagnosticInfo>(value));
        break;
    default:
        throw std::logic_error("no such type");
    }
}

void DissectorLines::addIdentifier(const OpcUa_NodeId& nodeId)
{
    if (encodingOf(nodeId) != 0) {
        add(formatted("opcua.nodeid.nsindex=%u", nodeId.NamespaceIndex));
    }
    switch (nodeId.IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        add(formatted("opcua.nodeid.numeric=%u", nodeId.Identifier.Numeric));
        break;
    case OpcUa_IdentifierType_String:
        add("opcua.nodeid.string=" + shown(nodeId.Identifier.String));
        break;
    case OpcUa_IdentifierType_Guid:
        add("opcua.nodeid.guid=" + shown(*nodeId.Identifier.Guid));
        break;
    default:
        add("opcua.nodeid.bytestring=" + shown(nodeId.Identifier.ByteString));
    }
}

void DissectorLines::addNodeId(const OpcUa_NodeId& nodeId)
{
    add(formatted("opcua.nodeid.encodingmask=0x%02x", encodingOf(nodeId)));
    addIdentifier(nodeId);
}

void DissectorLines::addExpandedNodeId(const OpcUa_ExpandedNodeId& nodeId)
{
    const bool hasUri = nodeId.NamespaceUri.strContent != nullptr;
    const bool hasServer = nodeId.ServerIndex != 0;
    const unsigned encoding = encodingOf(nodeId.NodeId);
    add(formatted("opcua.expandednodeid.mask=0x%02x",
                  encoding | (hasUri ? 0x80u : 0u) | (hasServer ? 0x40u : 0u)));
    {
        const Level level(*this);
        add(formatted("opcua.nodeid.encodingmask=0x%02x", encoding));
        add(formatted("opcua.expandednodeid.has_server_index=%d", hasServer ? 1 : 0));
        add(formatted("opcua.expandednodeid.has_namespace_uri=%d", hasUri ? 1 : 0));
    }
    addIdentifier(nodeId.NodeId);
    if (hasUri) {
        add("opcua.NamespaceUri=" + shown(nodeId.NamespaceUri));
    }
    if (hasServer) {
        add(formatted("opcua.expandednodeid.ServerIndex=%u", nodeId.ServerIndex));
    }
}

void DissectorLines::addLocalizedText(const OpcUa_LocalizedText& text)
{
    const bool hasLocale = text.Locale.strContent != nullptr;
    const bool hasText = text.Text.strContent != nullptr;
    addMask("loctext", (hasLocale ? 1u : 0u) | (hasText ? 2u : 0u),
            {"has_locale_information", "has_text"});
    if (hasLocale) {
        add("opcua.loctext.Locale=" + shown(text.Locale));
    }
    if (hasText) {
        add("opcua.loctext.Text=" + shown(text.Text));
    }
}

void DissectorLines::addDiagnosticInfo(const OpcUa_DiagnosticInfo& info)
{
    unsigned mask = 0;
    mask |= info.SymbolicId != -1 ? 1u : 0u;
    mask |= info.NamespaceUri != -1 ? 2u : 0u;
    mask |= info.LocalizedText != -1 ? 4u : 0u;
    mask |= info.Locale != -1 ? 8u : 0u;
    mask |= info.AdditionalInfo.strContent != nullptr ? 16u : 0u;
    mask |= info.InnerStatusCode != 0 ? 32u : 0u;
    mask |= info.InnerDiagnosticInfo != nullptr ? 64u : 0u;
    addMask("diag", mask,
            {"has_symbolic_id", "has_namespace", "has_localizedtext", "has_locale",
             "has_additional_info", "has_inner_statuscode", "has_inner_diagnostic_code"});
    // The standard writes the locale before the text; the analyser expects them the other way round,
    // and so it takes each for the other where both are there.
    const bool isSwapped = info.Locale != -1 && info.LocalizedText != -1;
    struct Index
    {
        const char* name;
        OpcUa_Int32 value;
    };
    const std::array<Index, 4> indexes = {
        {{"SymbolicId", info.SymbolicId},
         {"Namespace", info.NamespaceUri},
         {"LocalizedText", isSwapped ? info.Locale : info.LocalizedText},
         {"Locale", isSwapped ? info.LocalizedText : info.Locale}}};
    for (const Index& index : indexes) {
        if (index.value != -1) {
            add(formatted("opcua.diag.%s=%d", index.name, index.value));
        }
    }
    if ((mask & 16) != 0) {
        add("opcua.diag.AdditionalInfo=" + shown(info.AdditionalInfo));
    }
    if ((mask & 32) != 0) {
        add(formatted("opcua.diag.InnerStatusCode=0x%08x", info.InnerStatusCode));
    }
    if ((mask & 64) != 0) {
        add("Inner DiagnosticInfo: DiagnosticInfo");
        const Level level(*this);
        addDiagnosticInfo(*info.InnerDiagnosticInfo);
    }
}

void DissectorLines::addExtensionObject(const OpcUa_ExtensionObject& object)
{
    add("TypeId: ExpandedNodeId");
    {
        const Level level(*this);
        addExpandedNodeId(object.TypeId);
    }
    const bool hasBody = object.Encoding != OpcUa_ExtensionObjectEncoding_None;
    addMask("extobj", hasBody ? 1 : 0, {"has_binary_body", "has_xml_body"});
    if (object.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject) {
        const auto& body = object.Body.EncodeableObject;
        add(std::string(body.Type->TypeName) + ": " + body.Type->TypeName);
        addRecord(layoutOf(*body.Type), body.Object);
    } else if (hasBody) {
        addValue(OpcUaType_ByteString, "opcua.ByteString", "", &object.Body.Binary);
    }
}

void DissectorLines::addDataValue(const OpcUa_DataValue& value)
{
    unsigned mask = 0;
    mask |= value.Value.Datatype != OpcUaType_Null ? 1u : 0u;
    mask |= value.StatusCode != 0 ? 2u : 0u;
    mask |= OpcUa_DateTime_ToTicks(value.SourceTimestamp) != 0 ? 4u : 0u;
    mask |= OpcUa_DateTime_ToTicks(value.ServerTimestamp) != 0 ? 8u : 0u;
    mask |= value.SourcePicoseconds != 0 ? 16u : 0u;
    mask |= value.ServerPicoseconds != 0 ? 32u : 0u;
    addMask("datavalue", mask,
            {"has_value", "has_statuscode", "has_source_timestamp", "has_server_timestamp",
             "has_source_picoseconds", "has_server_picoseconds"});
    if ((mask & 1) != 0) {
        addValue(OpcUaType_Variant, "", "Value", &value.Value);
    }
    if ((mask & 2) != 0) {
        addValue(OpcUaType_StatusCode, "opcua.StatusCode", "", &value.StatusCode);
    }
    if ((mask & 4) != 0) {
        add("opcua.datavalue.SourceTimestamp=" + shown(value.SourceTimestamp));
    }
    if ((mask & 16) != 0) {
        add(formatted("opcua.datavalue.SourcePicoseconds=%u", value.SourcePicoseconds));
    }
    if ((mask & 8) != 0) {
        add("opcua.datavalue.ServerTimestamp=" + shown(value.ServerTimestamp));
    }
    if ((mask & 32) != 0) {
        add(formatted("opcua.datavalue.ServerPicoseconds=%u", value.ServerPicoseconds));
    }
}

void DissectorLines::addElements(OpcUa_Byte type, const std::string& name, const void* block,
                                 OpcUa_Int32 count)
{
    const std::size_t size = OpcUa_BuiltInType_GetTraits(type)->Size;
    add(formatted("opcua.variant.ArraySize=%d", count));
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        addValue(type, name, formatted("[%d]", i),
                 static_cast<const char*>(block) + static_cast<std::size_t>(i) * size);
    }
}

void DissectorLines::addVariant(const OpcUa_Variant& variant)
{
    const std::string typeName = typeNames[variant.Datatype];
    const std::string name = "opcua." + typeName;
    const OpcUa_VariantValue& value = variant.Value;
    unsigned form = variant.Datatype;
    if (variant.ArrayType != OpcUa_VariantArrayType_Scalar) {
        form |= variant.ArrayType == OpcUa_VariantArrayType_Matrix ? 0xC0u : 0x80u;
    }
    add(formatted("opcua.variant.has_value=0x%02x", form));
    if (variant.Datatype == OpcUaType_Null) {
        return;
    }
    if (variant.ArrayType == OpcUa_VariantArrayType_Scalar) {
        const bool isByPointer = OpcUa_BuiltInType_GetTraits(variant.Datatype)->IsByPointer;
        addValue(variant.Datatype, name, "Value",
                 isByPointer ? static_cast<const void*>(value.Guid) : &value);
        return;
    }
    OpcUa_Int32 count = value.Array.Length;
    const void* elements = value.Array.Elements;
    if (variant.ArrayType == OpcUa_VariantArrayType_Matrix) {
        elements = value.Matrix.Elements;
        count = 1;
        for (OpcUa_Int32 i = 0; i < value.Matrix.NoOfDimensions; ++i) {
            count *= value.Matrix.Dimensions[i];
        }
    }
    add(typeName + ": Array of " + typeName);
    {
        const Level level(*this);
        addElements(variant.Datatype, name, elements, count);
    }
    if (variant.ArrayType == OpcUa_VariantArrayType_Matrix) {
        add("ArrayDimensions");
        const Level level(*this);
        addElements(OpcUaType_Int32, "opcua.Int32", value.Matrix.Dimensions,
                    value.Matrix.NoOfDimensions);
    }
}
