#include "tests/stack/builtinsamples.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_bytestring.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_datetime.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_nodeid.h"
#include "stack/opcua_qualifiedname.h"
#include "stack/opcua_string.h"
#include "stack/opcua_variant.h"
#include "tests/stack/testrecord.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <stdexcept>

namespace {

void check(OpcUa_StatusCode status)
{
    if (OpcUa_IsBad(status)) {
        throw std::runtime_error("no memory for a sample");
    }
}

void setText(OpcUa_String& string, const char* text)
{
    check(OpcUa_String_AttachCopy(&string, text));
}

template <typename T>
T* allocate(OpcUa_Byte type, std::size_t count = 1)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(type);
    auto* elements = static_cast<T*>(OpcUa_Memory_AllocArray(count, sizeof(T)));
    for (std::size_t i = 0; i < count; ++i) {
        traits.Initialize(&elements[i]);
    }
    return elements;
}

template <typename T, int number>
void fillNumber(void* value)
{
    *static_cast<T*>(value) = static_cast<T>(number);
}

template <char last>
void fillString(void* value)
{
    const char text[] = {'t', 'e', 'x', 't', last, '\0'};
    setText(*static_cast<OpcUa_String*>(value), text);
}

template <OpcUa_UInt32 low>
void fillDateTime(void* value)
{
    *static_cast<OpcUa_DateTime*>(value) = {low, 0x01D00000};
}

template <OpcUa_Byte last>
void fillGuid(void* value)
{
    *static_cast<OpcUa_Guid*>(value) = {
        0x6B29FC40, 0xCA47, 0x1067, {0xB3, 0x1D, 0, 0xDD, 1, 2, 3, last}};
}

template <OpcUa_Byte last>
void fillByteString(void* value)
{
    auto* data = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(3));
    data[0] = 1;
    data[1] = 0;
    data[2] = last;
    *static_cast<OpcUa_ByteString*>(value) = {3, data};
}

template <char last>
void fillNodeId(void* value)
{
    auto& nodeId = *static_cast<OpcUa_NodeId*>(value);
    nodeId = {OpcUa_IdentifierType_String, 4, {}};
    nodeId.Identifier.String = {};
    fillString<last>(&nodeId.Identifier.String);
}

template <OpcUa_UInt32 server>
void fillExpandedNodeId(void* value)
{
    auto& nodeId = *static_cast<OpcUa_ExpandedNodeId*>(value);
    fillNodeId<'a'>(&nodeId.NodeId);
    setText(nodeId.NamespaceUri, "urn:sample");
    nodeId.ServerIndex = server;
}

template <OpcUa_UInt16 namespaceIndex>
void fillQualifiedName(void* value)
{
    auto& name = *static_cast<OpcUa_QualifiedName*>(value);
    name.NamespaceIndex = namespaceIndex;
    setText(name.Name, "name");
}

template <char last>
void fillLocalizedText(void* value)
{
    auto& text = *static_cast<OpcUa_LocalizedText*>(value);
    setText(text.Locale, "en");
    fillString<last>(&text.Text);
}

template <int number>
void fillExtensionObject(void* value)
{
    auto& object = *static_cast<OpcUa_ExtensionObject*>(value);
    fillExpandedNodeId<1>(&object.TypeId);
    object.BodySize = 12;
    fillWithTestRecord(object, number, "outer");
    fillWithTestRecord(testRecordOf(object).Next, 7, "inner");
}

template <char last>
void fillVariant(void* value)
{
    auto& variant = *static_cast<OpcUa_Variant*>(value);
    auto* inner = allocate<OpcUa_Variant>(OpcUaType_Variant, 2);
    inner[0].Datatype = OpcUaType_LocalizedText;
    inner[0].Value.LocalizedText = allocate<OpcUa_LocalizedText>(OpcUaType_LocalizedText);
    fillLocalizedText<last>(inner[0].Value.LocalizedText);
    inner[1].Datatype = OpcUaType_Double;
    inner[1].Value.Double = 2.5;
    auto* dimensions = allocate<OpcUa_Int32>(OpcUaType_Int32, 2);
    dimensions[0] = 2;
    dimensions[1] = 1;
    variant.Datatype = OpcUaType_Variant;
    variant.ArrayType = OpcUa_VariantArrayType_Matrix;
    variant.Value.Matrix = {2, dimensions, inner};
}

template <OpcUa_UInt16 picoseconds>
void fillDataValue(void* value)
{
    auto& dataValue = *static_cast<OpcUa_DataValue*>(value);
    fillVariant<'a'>(&dataValue.Value);
    dataValue.StatusCode = OpcUa_BadOutOfRange;
    dataValue.SourceTimestamp = {1, 2};
    dataValue.ServerTimestamp = {3, 4};
    dataValue.SourcePicoseconds = 5;
    dataValue.ServerPicoseconds = picoseconds;
}

template <OpcUa_StatusCode innerStatus>
void fillDiagnosticInfo(void* value)
{
    auto& info = *static_cast<OpcUa_DiagnosticInfo*>(value);
    info = {1, 2, 3, 4, {}, OpcUa_BadNoMatch, nullptr};
    setText(info.AdditionalInfo, "more");
    info.InnerDiagnosticInfo = allocate<OpcUa_DiagnosticInfo>(OpcUaType_DiagnosticInfo);
    info.InnerDiagnosticInfo->InnerStatusCode = innerStatus;
    setText(info.InnerDiagnosticInfo->AdditionalInfo, "still more");
}

} // namespace

const std::vector<BuiltInSample>& builtInSamples()
{
    static const std::vector<BuiltInSample> samples = {
        {"Boolean", OpcUaType_Boolean, fillNumber<OpcUa_Boolean, 1>, fillNumber<OpcUa_Boolean, 0>},
        {"SByte", OpcUaType_SByte, fillNumber<OpcUa_SByte, -5>, fillNumber<OpcUa_SByte, 5>},
        {"Byte", OpcUaType_Byte, fillNumber<OpcUa_Byte, 200>, fillNumber<OpcUa_Byte, 201>},
        {"Int16", OpcUaType_Int16, fillNumber<OpcUa_Int16, -500>, fillNumber<OpcUa_Int16, 1>},
        {"UInt16", OpcUaType_UInt16, fillNumber<OpcUa_UInt16, 60000>, fillNumber<OpcUa_UInt16, 1>},
        {"Int32", OpcUaType_Int32, fillNumber<OpcUa_Int32, -70000>, fillNumber<OpcUa_Int32, 1>},
        {"UInt32", OpcUaType_UInt32, fillNumber<OpcUa_UInt32, -1>, fillNumber<OpcUa_UInt32, 1>},
        {"Int64", OpcUaType_Int64, fillNumber<OpcUa_Int64, -9>, fillNumber<OpcUa_Int64, 9>},
        {"UInt64", OpcUaType_UInt64, fillNumber<OpcUa_UInt64, -9>, fillNumber<OpcUa_UInt64, 9>},
        {"Float", OpcUaType_Float, fillNumber<OpcUa_Float, 3>, fillNumber<OpcUa_Float, -3>},
        {"Double", OpcUaType_Double, fillNumber<OpcUa_Double, 3>, fillNumber<OpcUa_Double, -3>},
        {"String", OpcUaType_String, fillString<'a'>, fillString<'b'>},
        {"DateTime", OpcUaType_DateTime, fillDateTime<1>, fillDateTime<2>},
        {"Guid", OpcUaType_Guid, fillGuid<1>, fillGuid<2>},
        {"ByteString", OpcUaType_ByteString, fillByteString<1>, fillByteString<2>},
        {"XmlElement", OpcUaType_XmlElement, fillByteString<1>, fillByteString<2>},
        {"NodeId", OpcUaType_NodeId, fillNodeId<'a'>, fillNodeId<'b'>},
        {"ExpandedNodeId", OpcUaType_ExpandedNodeId, fillExpandedNodeId<1>, fillExpandedNodeId<2>},
        {"StatusCode", OpcUaType_StatusCode, fillNumber<OpcUa_StatusCode, -1>,
         fillNumber<OpcUa_StatusCode, 1>},
        {"QualifiedName", OpcUaType_QualifiedName, fillQualifiedName<1>, fillQualifiedName<2>},
        {"LocalizedText", OpcUaType_LocalizedText, fillLocalizedText<'a'>, fillLocalizedText<'b'>},
        {"ExtensionObject", OpcUaType_ExtensionObject, fillExtensionObject<1>,
         fillExtensionObject<2>},
        {"DataValue", OpcUaType_DataValue, fillDataValue<1>, fillDataValue<2>},
        {"Variant", OpcUaType_Variant, fillVariant<'a'>, fillVariant<'b'>},
        {"DiagnosticInfo", OpcUaType_DiagnosticInfo, fillDiagnosticInfo<OpcUa_BadNoData>,
         fillDiagnosticInfo<OpcUa_BadNoMatch>}};
    return samples;
}

std::vector<BuiltInSample> builtInSamplesWhere(bool (*condition)(const OpcUa_ElementTraits& traits))
{
    std::vector<BuiltInSample> samples;
    std::copy_if(builtInSamples().begin(), builtInSamples().end(), std::back_inserter(samples),
                 [condition](const BuiltInSample& sample) {
                     return condition(*OpcUa_BuiltInType_GetTraits(sample.type));
                 });
    return samples;
}

std::ostream& operator<<(std::ostream& stream, const BuiltInSample& sample)
{
    return stream << sample.name;
}

BuiltInValue::BuiltInValue(OpcUa_Byte type, void (*fill)(void* value))
    : m_traits(*OpcUa_BuiltInType_GetTraits(type))
    , m_memory(std::make_unique<unsigned char[]>(m_traits.Size))
{
    // Whatever was there before must not matter to an initialise.
    std::memset(m_memory.get(), 0xA5, m_traits.Size);
    m_traits.Initialize(get());
    if (fill != nullptr) {
        fill(get());
    }
}

BuiltInValue::~BuiltInValue()
{
    m_traits.Clear(get());
}

bool BuiltInValue::isCleared() const
{
    std::vector<unsigned char> empty(m_traits.Size, 0xA5);
    m_traits.Initialize(empty.data());
    return m_traits.Compare(get(), empty.data()) == 0;
}
