#include "stack/opcua_elementtraits.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_recordlayout.h"

namespace {

OpcUa_Int32 compareRecords(const OpcUa_RecordLayout& layout, const void* left, const void* right);

OpcUa_Int32 compareValues(const OpcUa_RecordField& field, const void* left, const void* right)
{
    if (field.Type == OpcUa_FieldType_Record) {
        return compareRecords(*field.Record, left, right);
    }
    return OpcUa_BuiltInType_GetTraits(field.BuiltInType)->Compare(left, right);
}

OpcUa_Int32 compareBlocks(const OpcUa_RecordField& field, const void* left, const void* right,
                          OpcUa_Int32 count)
{
    // What is nested in an element counts its level there.
    OpcUa_ElementTraits traits = field.Type == OpcUa_FieldType_Record
                                     ? OpcUa_ElementTraits_FromEncodeableType(*field.Record->Type)
                                     : *OpcUa_BuiltInType_GetTraits(field.BuiltInType);
    traits.IsNestable = false;
    return OpcUa_Elements_Compare(traits, left, right, count);
}

OpcUa_Int32 compareFields(const OpcUa_RecordField& field, const void* left, const void* right)
{
    if (!field.IsArray) {
        return compareValues(field, OpcUa_Field_At(left, field.Offset),
                             OpcUa_Field_At(right, field.Offset));
    }
    const OpcUa_Int32 count = OpcUa_Field_Count(field, left);
    if (count != OpcUa_Field_Count(field, right)) {
        return 1;
    }
    return compareBlocks(field, OpcUa_Field_Block(field, left), OpcUa_Field_Block(field, right),
                         count);
}

OpcUa_Int32 compareRecords(const OpcUa_RecordLayout& layout, const void* left, const void* right)
{
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        const OpcUa_Int32 order = compareFields(field, left, right);
        if (order != 0) {
            return order;
        }
    }
    return 0;
}

} // namespace

OpcUa_Int32 OpcUa_RecordLayout_Compare(const OpcUa_RecordLayout& layout, const void* left,
                                       const void* right)
{
    if (left == right) {
        return 0;
    }
    if (left == nullptr || right == nullptr) {
        return left == nullptr ? -1 : 1;
    }
    return compareRecords(layout, left, right);
}
