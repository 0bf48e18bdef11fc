#include "tests/stack/messagefiller.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_encodeableobject.h"
#include "stack/opcua_enumeratedtype.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_qualifiedname.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_types.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

constexpr OpcUa_UInt32 maxDepth = 3;

void check(OpcUa_StatusCode status)
{
    if (OpcUa_IsBad(status)) {
        throw std::runtime_error("no memory for a message");
    }
}

void setText(OpcUa_String& string, const std::string& text)
{
    check(OpcUa_String_AttachCopy(&string, text.c_str()));
}

template <typename T>
void setNumber(void* value, OpcUa_UInt32 number, OpcUa_Int64 factor = 1)
{
    *static_cast<T*>(value) = static_cast<T>(OpcUa_Int64{number} * factor);
}

std::size_t sizeOf(const OpcUa_RecordField& field)
{
    return field.Type == OpcUa_FieldType_Record
               ? field.Record->Size
               : OpcUa_BuiltInType_GetTraits(field.BuiltInType)->Size;
}

void initialize(const OpcUa_RecordField& field, void* value)
{
    if (field.Type == OpcUa_FieldType_Record) {
        field.Record->Type->Initialize(value);
    } else {
        OpcUa_BuiltInType_GetTraits(field.BuiltInType)->Initialize(value);
    }
}

std::vector<const OpcUa_RecordLayout*> layoutsWhere(bool isMessage)
{
    std::vector<const OpcUa_RecordLayout*> layouts;
    for (const auto* layout = OpcUa_RecordLayouts; *layout != nullptr; ++layout) {
        const std::string_view first = (*layout)->Fields[0].Name;
        if ((first == "RequestHeader" || first == "ResponseHeader") == isMessage) {
            layouts.push_back(*layout);
        }
    }
    return layouts;
}

} // namespace

const std::vector<const OpcUa_RecordLayout*>& messageLayouts()
{
    static const auto layouts = layoutsWhere(true);
    return layouts;
}

const std::vector<const OpcUa_RecordLayout*>& structureLayouts()
{
    static const auto layouts = [] {
        auto list = layoutsWhere(false);
        // The analyser expects the size of another type's field of the same name.
        const std::array misread = {&OpcUa_ComplexNumberType_EncodeableType,
                                    &OpcUa_EnumValueType_EncodeableType,
                                    &OpcUa_OptionSet_EncodeableType};
        std::erase_if(list, [&misread](const OpcUa_RecordLayout* layout) {
            return std::find(misread.begin(), misread.end(), layout->Type) != misread.end();
        });
        return list;
    }();
    return layouts;
}

void MessageFiller::fillRecord(const OpcUa_RecordLayout& layout, void* record)
{
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        if (field.IsArray) {
            fillArray(field, record);
        } else {
            fillField(field, OpcUa_Field_At(record, field.Offset));
        }
    }
}

void MessageFiller::fillArray(const OpcUa_RecordField& field, void* record)
{
    constexpr OpcUa_Int32 counts[] = {2, 3, 1, 2, 0, 2, -1};
    const OpcUa_Int32 count = counts[choose(std::size(counts))];
    OpcUa_Field_Count(field, record) = count;
    if (count < 1) {
        return;
    }
    const std::size_t size = sizeOf(field);
    auto* const block =
        static_cast<char*>(OpcUa_Memory_AllocArray(static_cast<std::size_t>(count), size));
    OpcUa_Field_Block(field, record) = block;
    for (char* element = block; element != block + static_cast<std::size_t>(count) * size;
         element += size) {
        initialize(field, element);
        fillField(field, element);
    }
}

void MessageFiller::fillField(const OpcUa_RecordField& field, void* value)
{
    if (field.Type == OpcUa_FieldType_Record) {
        fillRecord(*field.Record, value);
        return;
    }
    if (field.Type != OpcUa_FieldType_Enumeration) {
        fillBuiltIn(field.Type, value);
        return;
    }
    OpcUa_UInt32 count = 0;
    while (field.Enumeration->Values[count].Name != nullptr) {
        ++count;
    }
    *static_cast<OpcUa_Int32*>(value) = field.Enumeration->Values[choose(count)].Value;
}

void MessageFiller::fillBuiltIn(OpcUa_Byte type, void* value)
{
    switch (type) {
    case OpcUaType_Boolean:
        setNumber<OpcUa_Boolean>(value, choose(2));
        break;
    case OpcUaType_SByte:
        setNumber<OpcUa_SByte>(value, take(), -1);
        break;
    case OpcUaType_Byte:
        setNumber<OpcUa_Byte>(value, take());
        break;
    case OpcUaType_Int16:
        setNumber<OpcUa_Int16>(value, take(), -3);
        break;
    case OpcUaType_UInt16:
        setNumber<OpcUa_UInt16>(value, take(), 3);
        break;
    case OpcUaType_Int32:
        setNumber<OpcUa_Int32>(value, take(), -1001);
        break;
    case OpcUaType_UInt32:
        setNumber<OpcUa_UInt32>(value, take(), 1001);
        break;
    case OpcUaType_Int64:
        setNumber<OpcUa_Int64>(value, take(), -10000000019);
        break;
    case OpcUaType_UInt64:
        setNumber<OpcUa_UInt64>(value, take(), 10000000019);
        break;
    case OpcUaType_Float:
        *static_cast<OpcUa_Float*>(value) = static_cast<OpcUa_Float>(take()) + 0.5f;
        break;
    case OpcUaType_Double:
        *static_cast<OpcUa_Double*>(value) = -static_cast<OpcUa_Double>(take()) - 0.25;
        break;
    case OpcUaType_String:
        fillString(*static_cast<OpcUa_String*>(value));
        break;
    case OpcUaType_DateTime:
        // A day and a fraction of a second more each time.
        *static_cast<OpcUa_DateTime*>(value) =
            OpcUa_DateTime_FromTicks(130000000000000000 + 864001234567 * OpcUa_UInt64{take()});
        break;
    case OpcUaType_Guid:
        fillGuid(*static_cast<OpcUa_Guid*>(value));
        break;
    case OpcUaType_ByteString:
        fillByteString(*static_cast<OpcUa_ByteString*>(value));
        break;
    case OpcUaType_XmlElement: {
        const std::string text = "<x>" + std::to_string(take()) + "</x>";
        auto* const data = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(text.size()));
        std::copy(text.begin(), text.end(), data);
        *static_cast<OpcUa_XmlElement*>(value) = {static_cast<OpcUa_Int32>(text.size()), data};
        break;
    }
    case OpcUaType_NodeId:
        fillNodeId(*static_cast<OpcUa_NodeId*>(value));
        break;
    case OpcUaType_ExpandedNodeId:
        fillExpandedNodeId(*static_cast<OpcUa_ExpandedNodeId*>(value));
        break;
    case OpcUaType_StatusCode: {
        constexpr OpcUa_StatusCode statuses[] = {OpcUa_Good, OpcUa_BadNodeIdUnknown,
                                                 OpcUa_BadHostUnknown, OpcUa_BadOutOfMemory};
        *static_cast<OpcUa_StatusCode*>(value) = statuses[choose(std::size(statuses))];
        break;
    }
    case OpcUaType_QualifiedName: {
        auto& name = *static_cast<OpcUa_QualifiedName*>(value);
        name.NamespaceIndex = static_cast<OpcUa_UInt16>(take());
        fillString(name.Name);
        break;
    }
    case OpcUaType_LocalizedText:
        fillLocalizedText(*static_cast<OpcUa_LocalizedText*>(value));
        break;
    case OpcUaType_ExtensionObject:
        fillAnyExtensionObject(*static_cast<OpcUa_ExtensionObject*>(value));
        break;
    case OpcUaType_DataValue:
        fillDataValue(*static_cast<OpcUa_DataValue*>(value));
        break;
    case OpcUaType_Variant:
        fillAnyVariant(*static_cast<OpcUa_Variant*>(value));
        break;
    case OpcUaType_DiagnosticInfo:
        fillDiagnosticInfo(*static_cast<OpcUa_DiagnosticInfo*>(value));
        break;
    default:
        throw std::logic_error("no such type");
    }
}

void MessageFiller::fillString(OpcUa_String& string)
{
    const OpcUa_UInt32 number = take();
    switch (number % 8) {
    case 0: // stays null
        break;
    case 1:
        setText(string, "");
        break;
    case 2:
        setText(string, "gr\xC3\xBC\xC3\x9F & <" + std::to_string(number) + ">");
        break;
    case 3:
        setText(string, std::to_string(number) + std::string(300, 'x'));
        break;
    default:
        setText(string, "text " + std::to_string(number));
    }
}

void MessageFiller::fillByteString(OpcUa_ByteString& bytes)
{
    const OpcUa_UInt32 number = take();
    const auto length = static_cast<OpcUa_Int32>(number % 7) - 1;
    if (length < 0) {
        return;
    }
    auto* const data =
        static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(static_cast<std::size_t>(length)));
    for (OpcUa_Int32 i = 0; i < length; ++i) {
        data[i] = static_cast<OpcUa_Byte>(number + static_cast<OpcUa_UInt32>(i) * 37);
    }
    bytes = {length, data};
}

void MessageFiller::fillGuid(OpcUa_Guid& guid)
{
    const OpcUa_UInt32 number = take();
    guid = {0x12345678 + number, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}};
}

void MessageFiller::fillNodeId(OpcUa_NodeId& nodeId)
{
    const OpcUa_UInt32 number = take();
    nodeId.NamespaceIndex = static_cast<OpcUa_UInt16>(number % 9 == 0 ? 0 : number % 250);
    switch (number % 6) {
    case 0:
        nodeId.NamespaceIndex = 0;
        nodeId.Identifier.Numeric = number % 256;
        break;
    case 1:
        nodeId.Identifier.Numeric = number % 65536;
        break;
    case 2:
        nodeId.NamespaceIndex = static_cast<OpcUa_UInt16>(300 + number);
        nodeId.Identifier.Numeric = 70000 + number;
        break;
    case 3:
        nodeId.IdentifierType = OpcUa_IdentifierType_String;
        nodeId.Identifier.String = {};
        fillString(nodeId.Identifier.String);
        break;
    case 4:
        nodeId.IdentifierType = OpcUa_IdentifierType_Guid;
        nodeId.Identifier.Guid = static_cast<OpcUa_Guid*>(makeBlock(OpcUaType_Guid, 1));
        break;
    default:
        nodeId.IdentifierType = OpcUa_IdentifierType_Opaque;
        OpcUa_ByteString_Initialize(&nodeId.Identifier.ByteString);
        fillByteString(nodeId.Identifier.ByteString);
    }
}

void MessageFiller::fillExpandedNodeId(OpcUa_ExpandedNodeId& nodeId)
{
    fillNodeId(nodeId.NodeId);
    const OpcUa_UInt32 kind = choose(4);
    if ((kind & 1) != 0) {
        setText(nodeId.NamespaceUri, "urn:sample:" + std::to_string(take()));
    }
    if ((kind & 2) != 0) {
        nodeId.ServerIndex = take();
    }
}

void MessageFiller::fillLocalizedText(OpcUa_LocalizedText& text)
{
    const OpcUa_UInt32 kind = choose(4);
    if (kind != 1) {
        setText(text.Locale, "l" + std::to_string(take()));
    }
    if (kind != 2) {
        setText(text.Text, "t" + std::to_string(take()));
    }
}

void MessageFiller::fillExtensionObject(OpcUa_ExtensionObject& object,
                                        const OpcUa_RecordLayout& layout)
{
    void* record = nullptr;
    check(OpcUa_EncodeableObject_CreateExtension(layout.Type, &object, &record));
    fillRecord(layout, record);
}

void MessageFiller::fillAnyExtensionObject(OpcUa_ExtensionObject& object)
{
    ++m_depth;
    const OpcUa_UInt32 number = take();
    switch (m_depth <= maxDepth ? number % 8 : 0) {
    case 0: // stays empty
        break;
    case 1: // a type that nobody knows
        object.TypeId.NodeId.NamespaceIndex = 1;
        object.TypeId.NodeId.Identifier.Numeric = 70000;
        object.Encoding = OpcUa_ExtensionObjectEncoding_Binary;
        fillBuiltIn(OpcUaType_XmlElement, &object.Body.Binary);
        break;
    default: {
        // A step without a common divisor reaches every type sooner or later.
        const auto& layouts = structureLayouts();
        fillExtensionObject(object, *layouts[number * 29 % layouts.size()]);
    }
    }
    --m_depth;
}

void MessageFiller::fillDataValue(OpcUa_DataValue& value)
{
    const OpcUa_UInt32 mask = choose(64);
    if ((mask & 1) == 0) {
        fillAnyVariant(value.Value);
    }
    if ((mask & 2) == 0) {
        fillBuiltIn(OpcUaType_StatusCode, &value.StatusCode);
    }
    if ((mask & 4) == 0) {
        fillBuiltIn(OpcUaType_DateTime, &value.SourceTimestamp);
    }
    if ((mask & 8) == 0) {
        fillBuiltIn(OpcUaType_DateTime, &value.ServerTimestamp);
    }
    if ((mask & 16) == 0) {
        value.SourcePicoseconds = static_cast<OpcUa_UInt16>(take());
    }
    if ((mask & 32) == 0) {
        value.ServerPicoseconds = static_cast<OpcUa_UInt16>(take());
    }
}

void* MessageFiller::makeBlock(OpcUa_Byte type, OpcUa_Int32 count)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(type);
    auto* const block =
        static_cast<char*>(OpcUa_Memory_AllocArray(static_cast<std::size_t>(count), traits.Size));
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        char* const element = block + static_cast<std::size_t>(i) * traits.Size;
        traits.Initialize(element);
        fillBuiltIn(type, element);
    }
    return block;
}

void MessageFiller::fillVariant(OpcUa_Variant& variant, OpcUa_Byte type, OpcUa_Byte arrayType)
{
    variant.Datatype = type;
    variant.ArrayType = arrayType;
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(type);
    if (arrayType == OpcUa_VariantArrayType_Array) {
        variant.Value.Array = {2, makeBlock(type, 2)};
    } else if (arrayType == OpcUa_VariantArrayType_Matrix) {
        auto* const dimensions =
            static_cast<OpcUa_Int32*>(OpcUa_Memory_AllocArray(2, sizeof(OpcUa_Int32)));
        dimensions[0] = 1;
        dimensions[1] = 3;
        variant.Value.Matrix = {2, dimensions, makeBlock(type, 3)};
    } else if (traits.IsByPointer) {
        variant.Value.Guid = static_cast<OpcUa_Guid*>(makeBlock(type, 1));
    } else if (type != OpcUaType_Null) {
        traits.Initialize(&variant.Value);
        fillBuiltIn(type, &variant.Value);
    }
}

void MessageFiller::fillAnyVariant(OpcUa_Variant& variant)
{
    ++m_depth;
    const OpcUa_UInt32 number = take();
    const bool canNest = m_depth <= maxDepth;
    auto type = static_cast<OpcUa_Byte>(number % 26);
    const auto arrayType = static_cast<OpcUa_Byte>(number / 2 % 3);
    if (!canNest && type >= OpcUaType_ExtensionObject) {
        type = OpcUaType_String;
    }
    // A variant in a variant is only allowed in an array.
    if (type != OpcUaType_Variant || arrayType != OpcUa_VariantArrayType_Scalar) {
        fillVariant(variant, type, type == OpcUaType_Null ? OpcUa_Byte{0} : arrayType);
    }
    --m_depth;
}

void MessageFiller::fillDiagnosticInfo(OpcUa_DiagnosticInfo& info)
{
    const OpcUa_UInt32 mask = choose(128);
    const auto index = [this](bool isThere) {
        return isThere ? static_cast<OpcUa_Int32>(take()) : -1;
    };
    info.SymbolicId = index((mask & 1) == 0);
    info.NamespaceUri = index((mask & 2) == 0);
    info.Locale = index((mask & 4) == 0);
    info.LocalizedText = index((mask & 8) == 0);
    if ((mask & 16) == 0) {
        setText(info.AdditionalInfo, "info " + std::to_string(take()));
    }
    if ((mask & 32) == 0) {
        info.InnerStatusCode = OpcUa_BadOutOfRange;
    }
    ++m_depth;
    if ((mask & 64) == 0 && m_depth <= maxDepth) {
        info.InnerDiagnosticInfo =
            static_cast<OpcUa_DiagnosticInfo*>(makeBlock(OpcUaType_DiagnosticInfo, 1));
    }
    --m_depth;
}
