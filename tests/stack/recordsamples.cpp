#include "tests/stack/recordsamples.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_encodeableobject.h"
#include "stack/opcua_enumeratedtype.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_types.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/variantsamples.h"

#include <cstring>
#include <stdexcept>
#include <string>

namespace {

void check(OpcUa_StatusCode status)
{
    if (OpcUa_IsBad(status)) {
        throw std::runtime_error("no memory for a sample");
    }
}

void fillText(OpcUa_String& string)
{
    check(OpcUa_String_AttachCopy(&string, ""));
}

void fillEmpty(OpcUa_Byte type, void* value)
{
    switch (type) {
    case OpcUaType_String:
        fillText(*static_cast<OpcUa_String*>(value));
        break;
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        *static_cast<OpcUa_ByteString*>(value) = {0,
                                                  static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(0))};
        break;
    case OpcUaType_QualifiedName:
        fillText(static_cast<OpcUa_QualifiedName*>(value)->Name);
        break;
    case OpcUaType_LocalizedText:
        fillText(static_cast<OpcUa_LocalizedText*>(value)->Locale);
        fillText(static_cast<OpcUa_LocalizedText*>(value)->Text);
        break;
    default:
        break;
    }
}

/// A body that stays encoded, as no known type has this id.
void fillEncodedBody(OpcUa_ExtensionObject& object)
{
    builtInSamples()[OpcUaType_ByteString - OpcUaType_Boolean].fill(&object.Body.Binary);
    object.TypeId.NodeId.Identifier.Numeric = 70000;
    object.Encoding = OpcUa_ExtensionObjectEncoding_Binary;
    object.BodySize = object.Body.Binary.Length;
}

template <typename Record>
Record& createIn(OpcUa_ExtensionObject& object)
{
    void* record = nullptr;
    check(OpcUa_EncodeableObject_CreateExtension(OpcUa_EncodeableTypeOf<Record>, &object, &record));
    return *static_cast<Record*>(record);
}

constexpr OpcUa_Int32 rangeSize = 16;

void fillRange(OpcUa_ExtensionObject& object)
{
    createIn<OpcUa_Range>(object) = {-1.5, 2.5};
    object.BodySize = rangeSize;
}

/// A literal operand whose value is an array of extension objects with ranges.
void fillNestedBody(OpcUa_ExtensionObject& object)
{
    OpcUa_Variant& value = createIn<OpcUa_LiteralOperand>(object).Value;
    auto* ranges = static_cast<OpcUa_ExtensionObject*>(
        OpcUa_Memory_AllocZeroed(2, sizeof(OpcUa_ExtensionObject)));
    fillRange(ranges[0]);
    fillRange(ranges[1]);
    value.Datatype = OpcUaType_ExtensionObject;
    value.ArrayType = OpcUa_VariantArrayType_Array;
    value.Value.Array = {2, ranges};
    // The byte of the variant, the count, and each time four bytes of id, one of form and a length.
    object.BodySize = 1 + 4 + 2 * (4 + 1 + 4 + rangeSize);
}

void fillExtensionObject(RecordSample sample, OpcUa_ExtensionObject& object)
{
    switch (sample) {
    case RecordSample::Filled:
        fillEncodedBody(object);
        break;
    case RecordSample::FilledOther:
        fillRange(object);
        break;
    default:
        fillNestedBody(object);
        break;
    }
}

void fillVariant(RecordSample sample, OpcUa_Variant& variant)
{
    const BuiltInSample& numbers = builtInSamples()[OpcUaType_Int16 - OpcUaType_Boolean];
    const BuiltInSample& variants = builtInSamples()[OpcUaType_Variant - OpcUaType_Boolean];
    switch (sample) {
    case RecordSample::Filled:
        makeScalar(variant, builtInSamples()[OpcUaType_QualifiedName - OpcUaType_Boolean]);
        break;
    case RecordSample::FilledOther:
        makeArray(variant, numbers, 3);
        break;
    default:
        variants.fill(&variant);
        break;
    }
}

void fillBuiltIn(OpcUa_Byte type, void* value, RecordSample sample)
{
    const BuiltInSample& builtIn = builtInSamples()[type - OpcUaType_Boolean];
    if (type == OpcUaType_ExtensionObject) {
        fillExtensionObject(sample, *static_cast<OpcUa_ExtensionObject*>(value));
    } else if (type == OpcUaType_Variant) {
        fillVariant(sample, *static_cast<OpcUa_Variant*>(value));
    } else if (type == OpcUaType_DataValue && sample != RecordSample::Nested) {
        fillVariant(sample, static_cast<OpcUa_DataValue*>(value)->Value);
        static_cast<OpcUa_DataValue*>(value)->SourceTimestamp = {1, 2};
    } else if (sample == RecordSample::FilledOther) {
        builtIn.fillOther(value);
    } else {
        builtIn.fill(value);
    }
}

void fillEnumeration(const OpcUa_EnumeratedType& type, OpcUa_Int32& value, RecordSample sample)
{
    value = type.Values[sample == RecordSample::FilledOther ? 1 : 0].Value;
}

void fillValue(const OpcUa_RecordField& field, void* value, RecordSample sample)
{
    if (field.Type == OpcUa_FieldType_Record) {
        fillRecord(*field.Record, value, sample);
    } else if (sample == RecordSample::Empty) {
        fillEmpty(field.Type, value);
    } else if (sample == RecordSample::Null) {
        return;
    } else if (field.Type == OpcUa_FieldType_Enumeration) {
        fillEnumeration(*field.Enumeration, *static_cast<OpcUa_Int32*>(value), sample);
    } else {
        fillBuiltIn(field.Type, value, sample);
    }
}

std::size_t elementSize(const OpcUa_RecordField& field)
{
    return field.Type == OpcUa_FieldType_Record
               ? field.Record->Size
               : OpcUa_BuiltInType_GetTraits(field.BuiltInType)->Size;
}

void initializeElement(const OpcUa_RecordField& field, void* element)
{
    if (field.Type == OpcUa_FieldType_Record) {
        field.Record->Type->Initialize(element);
    } else {
        OpcUa_BuiltInType_GetTraits(field.BuiltInType)->Initialize(element);
    }
}

void fillArray(const OpcUa_RecordField& field, void* record, RecordSample sample)
{
    if (sample == RecordSample::Null) {
        OpcUa_Field_Count(field, record) = -1;
        return;
    }
    if (sample == RecordSample::Empty) {
        return;
    }
    const OpcUa_Int32 count = sample == RecordSample::FilledOther ? 2 : 1;
    const std::size_t size = elementSize(field);
    auto* block =
        static_cast<char*>(OpcUa_Memory_AllocArray(static_cast<std::size_t>(count), size));
    OpcUa_Field_Block(field, record) = block;
    OpcUa_Field_Count(field, record) = count;
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        char* element = block + static_cast<std::size_t>(i) * size;
        initializeElement(field, element);
        fillValue(field, element, sample);
    }
}

bool isInitializedValue(const OpcUa_RecordField& field, const void* value)
{
    if (field.Type == OpcUa_FieldType_Record) {
        return isInitialized(*field.Record, value);
    }
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(field.BuiltInType);
    std::vector<unsigned char> empty(traits.Size, 0xA5);
    traits.Initialize(empty.data());
    return traits.Compare(value, empty.data()) == 0;
}

} // namespace

std::ostream& operator<<(std::ostream& stream, RecordSample sample)
{
    constexpr const char* names[] = {"Initialized", "Null",        "Empty",
                                     "Filled",      "FilledOther", "Nested"};
    return stream << names[static_cast<std::size_t>(sample)];
}

const std::vector<const OpcUa_RecordLayout*>& allLayouts()
{
    static const std::vector<const OpcUa_RecordLayout*> layouts = [] {
        std::vector<const OpcUa_RecordLayout*> list;
        for (const auto* layout = OpcUa_RecordLayouts; *layout != nullptr; ++layout) {
            list.push_back(*layout);
        }
        return list;
    }();
    return layouts;
}

const OpcUa_RecordLayout& layoutOf(const char* typeName)
{
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        if (std::strcmp(layout->Type->TypeName, typeName) == 0) {
            return *layout;
        }
    }
    throw std::runtime_error(std::string("no type ") + typeName);
}

void fillRecord(const OpcUa_RecordLayout& layout, void* record, RecordSample sample)
{
    if (sample == RecordSample::Initialized) {
        return;
    }
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        if (field.IsArray) {
            fillArray(field, record, sample);
        } else {
            fillValue(field, OpcUa_Field_At(record, field.Offset), sample);
        }
    }
}

bool isInitialized(const OpcUa_RecordLayout& layout, const void* record)
{
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        const bool isInitial =
            field.IsArray ? OpcUa_Field_Block(field, record) == nullptr &&
                                OpcUa_Field_Count(field, record) == 0
                          : isInitializedValue(field, OpcUa_Field_At(record, field.Offset));
        if (!isInitial) {
            return false;
        }
    }
    return true;
}

SampleRecord::SampleRecord(const OpcUa_RecordLayout& layout, RecordSample sample)
    : m_layout(layout)
    , m_memory(std::make_unique<unsigned char[]>(layout.Size))
{
    // Whatever was there before must not matter to an initialise.
    std::memset(m_memory.get(), 0xA5, layout.Size);
    layout.Type->Initialize(get());
    fillRecord(layout, get(), sample);
}

SampleRecord::~SampleRecord()
{
    m_layout.Type->Clear(get());
}
