#include "stack/opcua_encodeabletypetable.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_recordlayout.h"
#include "stack/opcua_types.h"
#include "tests/stack/recordsamples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

// What the generator made against the lists that it made it from, read here once more.

namespace {

struct ListedField
{
    std::string name;
    std::string type;
    bool isArray;
};

struct ListedType
{
    std::string name;
    OpcUa_UInt32 ids[3];
    std::vector<ListedField> fields;
};

struct ListedEnumeration
{
    std::string name;
    std::vector<std::pair<std::string, OpcUa_Int32>> values;
};

/// The lines of a list without its comments.
std::vector<std::string> linesOf(const char* fileName)
{
    std::ifstream file(std::string(ZANDREL_SOURCE_DIR "/stack/data/") + fileName);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line[0] != '#') {
            lines.push_back(line);
        }
    }
    return lines;
}

const std::vector<ListedType>& listedTypes()
{
    static const std::vector<ListedType> types = [] {
        std::vector<ListedType> list;
        for (const std::string& line : linesOf("types.txt")) {
            std::istringstream words(line);
            if (line[0] == ' ') {
                ListedField field;
                words >> field.name >> field.type;
                const auto bracket = field.type.find("[]");
                field.isArray = bracket != std::string::npos;
                field.type = field.type.substr(0, bracket);
                list.back().fields.push_back(field);
            } else {
                ListedType type;
                words >> type.name >> type.ids[0] >> type.ids[1] >> type.ids[2];
                list.push_back(type);
            }
        }
        return list;
    }();
    return types;
}

const std::vector<ListedEnumeration>& listedEnumerations()
{
    static const std::vector<ListedEnumeration> enumerations = [] {
        std::vector<ListedEnumeration> list;
        for (const std::string& line : linesOf("enumerations.txt")) {
            std::istringstream words(line);
            std::pair<std::string, OpcUa_Int32> value;
            words >> value.first;
            if (line[0] == ' ') {
                words >> value.second;
                list.back().values.push_back(value);
            } else {
                list.push_back({value.first, {}});
            }
        }
        return list;
    }();
    return enumerations;
}

/// Size and alignment of everything that a field may be.
struct Shape
{
    std::size_t size;
    std::size_t alignment;

    template <typename T>
    static constexpr Shape of()
    {
        return {sizeof(T), alignof(T)};
    }
};

const std::map<std::string, Shape>& builtInShapes()
{
    static const std::map<std::string, Shape> shapes = {
        {"Boolean", {1, 1}},
        {"SByte", {1, 1}},
        {"Byte", {1, 1}},
        {"Int16", {2, 2}},
        {"UInt16", {2, 2}},
        {"Int32", {4, 4}},
        {"UInt32", {4, 4}},
        {"Int64", {8, 8}},
        {"UInt64", {8, 8}},
        {"Float", {4, 4}},
        {"Double", {8, 8}},
        {"String", Shape::of<OpcUa_String>()},
        {"DateTime", {8, 4}},
        {"Guid", {16, 4}},
        {"ByteString", Shape::of<OpcUa_ByteString>()},
        {"XmlElement", Shape::of<OpcUa_XmlElement>()},
        {"NodeId", Shape::of<OpcUa_NodeId>()},
        {"ExpandedNodeId", Shape::of<OpcUa_ExpandedNodeId>()},
        {"StatusCode", {4, 4}},
        {"QualifiedName", Shape::of<OpcUa_QualifiedName>()},
        {"LocalizedText", Shape::of<OpcUa_LocalizedText>()},
        {"ExtensionObject", Shape::of<OpcUa_ExtensionObject>()},
        {"DataValue", Shape::of<OpcUa_DataValue>()},
        {"Variant", Shape::of<OpcUa_Variant>()},
        {"DiagnosticInfo", Shape::of<OpcUa_DiagnosticInfo>()}};
    return shapes;
}

const ListedType* findListed(const std::string& name)
{
    const auto isIt = [&](const ListedType& type) { return type.name == name; };
    const auto found = std::find_if(listedTypes().begin(), listedTypes().end(), isIt);
    return found == listedTypes().end() ? nullptr : &*found;
}

/// Lays fields out one behind the other, each at the next multiple of its alignment.
class Placement
{
public:
    std::size_t place(const Shape& shape)
    {
        m_alignment = std::max(m_alignment, shape.alignment);
        const std::size_t offset = roundedUp(m_end, shape.alignment);
        m_end = offset + shape.size;
        return offset;
    }
    [[nodiscard]] Shape total() const { return {roundedUp(m_end, m_alignment), m_alignment}; }

private:
    static std::size_t roundedUp(std::size_t value, std::size_t alignment)
    {
        return (value + alignment - 1) / alignment * alignment;
    }

    std::size_t m_end = 0;
    std::size_t m_alignment = 1;
};

struct PlacedField
{
    std::size_t offset;
    std::size_t countOffset;
};

Shape shapeOf(const std::string& type);

PlacedField placeField(Placement& placement, const ListedField& field)
{
    if (!field.isArray) {
        return {placement.place(shapeOf(field.type)), 0};
    }
    const std::size_t countOffset = placement.place(Shape::of<OpcUa_Int32>());
    return {placement.place(Shape::of<void*>()), countOffset};
}

Shape shapeOf(const std::string& type)
{
    const auto builtIn = builtInShapes().find(type);
    if (builtIn != builtInShapes().end()) {
        return builtIn->second;
    }
    const ListedType* record = findListed(type);
    if (record == nullptr) {
        return Shape::of<OpcUa_Int32>(); // an enumeration
    }
    Placement placement;
    for (const ListedField& field : record->fields) {
        placeField(placement, field);
    }
    return placement.total();
}

/// The name of a field's type as a list would have it.
std::string typeNameOf(const OpcUa_RecordField& field)
{
    static const char* const builtIns[] = {
        "Boolean",       "SByte",           "Byte",           "Int16",      "UInt16",
        "Int32",         "UInt32",          "Int64",          "UInt64",     "Float",
        "Double",        "String",          "DateTime",       "Guid",       "ByteString",
        "XmlElement",    "NodeId",          "ExpandedNodeId", "StatusCode", "QualifiedName",
        "LocalizedText", "ExtensionObject", "DataValue",      "Variant",    "DiagnosticInfo"};
    if (field.Type == OpcUa_FieldType_Record) {
        return field.Record->Type->TypeName;
    }
    return field.Type == OpcUa_FieldType_Enumeration ? field.Enumeration->TypeName
                                                     : builtIns[field.Type - OpcUaType_Boolean];
}

TEST(Types, table_has_the_listed_types_with_their_ids_in_order)
{
    ASSERT_EQ(listedTypes().size(), 221u);
    ASSERT_EQ(allLayouts().size(), listedTypes().size());
    for (std::size_t i = 0; i < listedTypes().size(); ++i) {
        const ListedType& listed = listedTypes()[i];
        const OpcUa_EncodeableType& row = *OpcUa_KnownEncodeableTypes[i];
        EXPECT_EQ(allLayouts()[i]->Type, &row);
        EXPECT_EQ(row.TypeName, listed.name);
        EXPECT_EQ(row.TypeId, listed.ids[0]) << listed.name;
        EXPECT_EQ(row.BinaryEncodingTypeId, listed.ids[1]) << listed.name;
        EXPECT_EQ(row.XmlEncodingTypeId, listed.ids[2]) << listed.name;
        EXPECT_EQ(row.NamespaceUri, nullptr) << listed.name;
    }
    EXPECT_EQ(OpcUa_KnownEncodeableTypes[listedTypes().size()], nullptr);
}

TEST(Types, all_ids_are_different)
{
    std::set<OpcUa_UInt32> ids;
    for (const ListedType& type : listedTypes()) {
        ids.insert(std::begin(type.ids), std::end(type.ids));
    }
    EXPECT_EQ(ids.size(), 3 * listedTypes().size());
}

TEST(Types, well_known_rows)
{
    struct Row
    {
        const OpcUa_EncodeableType& type;
        const char* name;
        OpcUa_UInt32 ids[3];
    };
    const Row rows[] = {
        {OpcUa_Node_EncodeableType, "Node", {258, 260, 259}},
        {OpcUa_ObjectNode_EncodeableType, "ObjectNode", {261, 263, 262}},
        {OpcUa_TrustListDataType_EncodeableType, "TrustListDataType", {12554, 12680, 12676}},
        {OpcUa_FindServersRequest_EncodeableType, "FindServersRequest", {420, 422, 421}},
        {OpcUa_Annotation_EncodeableType, "Annotation", {891, 893, 892}}};
    for (const Row& row : rows) {
        EXPECT_STREQ(row.type.TypeName, row.name);
        EXPECT_EQ(row.type.TypeId, row.ids[0]) << row.name;
        EXPECT_EQ(row.type.BinaryEncodingTypeId, row.ids[1]) << row.name;
        EXPECT_EQ(row.type.XmlEncodingTypeId, row.ids[2]) << row.name;
    }
}

TEST(Types, layouts_have_the_listed_fields_in_order)
{
    for (std::size_t i = 0; i < listedTypes().size(); ++i) {
        const ListedType& listed = listedTypes()[i];
        SCOPED_TRACE(listed.name);
        const OpcUa_RecordLayout& layout = *allLayouts()[i];
        ASSERT_EQ(layout.NoOfFields, listed.fields.size());
        for (std::size_t j = 0; j < listed.fields.size(); ++j) {
            EXPECT_EQ(layout.Fields[j].Name, listed.fields[j].name);
            EXPECT_EQ(typeNameOf(layout.Fields[j]), listed.fields[j].type);
            EXPECT_EQ(layout.Fields[j].IsArray, listed.fields[j].isArray);
        }
    }
}

TEST(Types, records_hold_their_fields_one_behind_the_other)
{
    for (std::size_t i = 0; i < listedTypes().size(); ++i) {
        const ListedType& listed = listedTypes()[i];
        SCOPED_TRACE(listed.name);
        const OpcUa_RecordLayout& layout = *allLayouts()[i];
        Placement placement;
        for (std::size_t j = 0; j < listed.fields.size(); ++j) {
            const PlacedField expected = placeField(placement, listed.fields[j]);
            EXPECT_EQ(layout.Fields[j].Offset, expected.offset) << listed.fields[j].name;
            EXPECT_EQ(layout.Fields[j].CountOffset, expected.countOffset) << listed.fields[j].name;
        }
        EXPECT_EQ(layout.Size, placement.total().size);
        EXPECT_EQ(layout.Type->AllocationSize, layout.Size);
    }
}

TEST(Types, every_type_has_a_compare_of_its_own)
{
    std::set<OpcUa_Int32 (*)(const void*, const void*)> compares;
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        compares.insert(layout->Type->Compare);
    }
    EXPECT_EQ(compares.size(), allLayouts().size());
}

TEST(Types, layouts_tell_what_owns_nothing_and_what_starts_with_zeroes)
{
    struct Row
    {
        const char* name;
        bool isPlain;
        bool isZeroed;
        OpcUa_UInt16 minimalSize;
    };
    const Row rows[] = {{"Range", true, true, 16},
                        {"ServiceCounterDataType", true, true, 8},
                        {"AggregateFilter", false, true, 2 + 8 + 8 + 1 + 1 + 1 + 1 + 1},
                        {"OptionSet", false, false, 8},                        // byte strings
                        {"StatusResult", false, false, 5},                     // a diagnostic info
                        {"ServiceFault", false, false, 8 + 4 + 4 + 1 + 4 + 3}, // one in its header
                        {"TrustListDataType", false, true, 20}, // only arrays of byte strings
                        {"AddNodesResult", false, true, 6},
                        {"UserTokenPolicy", false, true, 20}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(layoutOf(row.name).IsPlain, row.isPlain);
        EXPECT_EQ(layoutOf(row.name).IsZeroed, row.isZeroed);
        EXPECT_EQ(layoutOf(row.name).MinimalSize, row.minimalSize);
    }
}

// The shapes of fields: an array is a count and a block, a record lies in place, a field of an
// abstract type is an extension object.
static_assert(std::is_same_v<decltype(OpcUa_TrustListDataType::SpecifiedLists), OpcUa_UInt32>);
static_assert(
    std::is_same_v<decltype(OpcUa_TrustListDataType::NoOfTrustedCertificates), OpcUa_Int32>);
static_assert(
    std::is_same_v<decltype(OpcUa_TrustListDataType::TrustedCertificates), OpcUa_ByteString*>);
static_assert(std::is_same_v<decltype(OpcUa_ReadRequest::RequestHeader), OpcUa_RequestHeader>);
static_assert(std::is_same_v<decltype(OpcUa_ReadRequest::NodesToRead), OpcUa_ReadValueId*>);
static_assert(sizeof(OpcUa_ReadRequest::TimestampsToReturn) == 4);
static_assert(std::is_same_v<decltype(OpcUa_ActivateSessionRequest::UserIdentityToken),
                             OpcUa_ExtensionObject>);
static_assert(std::is_same_v<decltype(OpcUa_HistoryUpdateRequest::HistoryUpdateDetails),
                             OpcUa_ExtensionObject*>);
static_assert(std::is_standard_layout_v<OpcUa_SessionDiagnosticsDataType>);
static_assert(std::is_trivially_copyable_v<OpcUa_SessionDiagnosticsDataType>);
static_assert(OpcUa_EncodeableTypeOf<OpcUa_ReadRequest> == &OpcUa_ReadRequest_EncodeableType);
static_assert(OpcUa_EncodeableTypeOf<int> == nullptr);

const OpcUa_EnumeratedType* const allEnumerations[] = {
    &OpcUa_NodeIdType_EnumeratedType,
    &OpcUa_NamingRuleType_EnumeratedType,
    &OpcUa_OpenFileMode_EnumeratedType,
    &OpcUa_TrustListMasks_EnumeratedType,
    &OpcUa_IdType_EnumeratedType,
    &OpcUa_NodeClass_EnumeratedType,
    &OpcUa_ApplicationType_EnumeratedType,
    &OpcUa_MessageSecurityMode_EnumeratedType,
    &OpcUa_UserTokenType_EnumeratedType,
    &OpcUa_SecurityTokenRequestType_EnumeratedType,
    &OpcUa_NodeAttributesMask_EnumeratedType,
    &OpcUa_AttributeWriteMask_EnumeratedType,
    &OpcUa_BrowseDirection_EnumeratedType,
    &OpcUa_BrowseResultMask_EnumeratedType,
    &OpcUa_ComplianceLevel_EnumeratedType,
    &OpcUa_FilterOperator_EnumeratedType,
    &OpcUa_TimestampsToReturn_EnumeratedType,
    &OpcUa_HistoryUpdateType_EnumeratedType,
    &OpcUa_PerformUpdateType_EnumeratedType,
    &OpcUa_MonitoringMode_EnumeratedType,
    &OpcUa_DataChangeTrigger_EnumeratedType,
    &OpcUa_DeadbandType_EnumeratedType,
    &OpcUa_EnumeratedTestType_EnumeratedType,
    &OpcUa_RedundancySupport_EnumeratedType,
    &OpcUa_ServerState_EnumeratedType,
    &OpcUa_ModelChangeStructureVerbMask_EnumeratedType,
    &OpcUa_AxisScaleEnumeration_EnumeratedType,
    &OpcUa_ExceptionDeviationFormat_EnumeratedType};

TEST(Enumerations, tables_have_the_listed_names_and_values_and_an_end)
{
    ASSERT_EQ(listedEnumerations().size(), std::size(allEnumerations));
    for (std::size_t i = 0; i < std::size(allEnumerations); ++i) {
        const ListedEnumeration& listed = listedEnumerations()[i];
        SCOPED_TRACE(listed.name);
        EXPECT_EQ(allEnumerations[i]->TypeName, listed.name);
        const OpcUa_EnumeratedValue* value = allEnumerations[i]->Values;
        for (const auto& [name, number] : listed.values) {
            ASSERT_NE(value->Name, nullptr);
            EXPECT_EQ(value->Name, name);
            EXPECT_EQ(value->Value, number);
            ++value;
        }
        EXPECT_EQ(value->Name, nullptr);
    }
}

TEST(Enumerations, well_known_values)
{
    EXPECT_EQ(OpcUa_NodeIdType_ByteString, 5);
    EXPECT_EQ(OpcUa_NamingRuleType_Mandatory, 1);
    EXPECT_EQ(OpcUa_TrustListMasks_All, 15);
    EXPECT_EQ(OpcUa_NodeClass_View, 128);
    EXPECT_EQ(OpcUa_MessageSecurityMode_SignAndEncrypt, 3);
    EXPECT_EQ(OpcUa_NodeAttributesMask_All, 4194303);
    EXPECT_EQ(OpcUa_NodeAttributesMask_VariableType, 3958902);
    EXPECT_EQ(OpcUa_AttributeWriteMask_ValueForVariableType, 2097152);
    EXPECT_EQ(OpcUa_BrowseResultMask_TargetInfo, 60);
    EXPECT_EQ(OpcUa_FilterOperator_BitwiseOr, 17);
    EXPECT_EQ(OpcUa_EnumeratedTestType_Yellow, 4);
    EXPECT_EQ(OpcUa_ExceptionDeviationFormat_Unknown, 4);
}

} // namespace
