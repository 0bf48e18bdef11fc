#include "base/uaservicerecordarray.h"

#include "base/uabuiltinarray.h"
#include "platform/allocator.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_encodeableobject.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_variant.h"

#include <cstddef>
#include <cstring>

using Type = OpcUa_EncodeableType;

namespace {

const void* recordAt(const Type& type, const void* records, OpcUa_Int32 index)
{
    return static_cast<const char*>(records) +
           static_cast<std::size_t>(index) * type.AllocationSize;
}

void* recordAt(const Type& type, void* records, OpcUa_Int32 index)
{
    return static_cast<char*>(records) + static_cast<std::size_t>(index) * type.AllocationSize;
}

void*& recordIn(OpcUa_ExtensionObject& object)
{
    return object.Body.EncodeableObject.Object;
}

void freeObjects(OpcUa_ExtensionObject* objects, OpcUa_Int32 length)
{
    OpcUa_Elements_Free(*OpcUa_BuiltInType_GetTraits(OpcUaType_ExtensionObject), objects, length);
}

/// Makes extension objects with initialised records; none for a length of 0.
OpcUa_StatusCode createObjects(const Type& type, OpcUa_Int32 length,
                               OpcUa_ExtensionObject*& objects)
{
    objects = nullptr;
    if (length < 1) {
        return OpcUa_Good;
    }
    auto* block = static_cast<OpcUa_ExtensionObject*>(
        OpcUa_Memory_AllocZeroed(static_cast<std::size_t>(length), sizeof(OpcUa_ExtensionObject)));
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    for (OpcUa_Int32 i = 0; i < length; ++i) {
        void* record = nullptr;
        const OpcUa_StatusCode status =
            OpcUa_EncodeableObject_CreateExtension(&type, &block[i], &record);
        if (OpcUa_IsBad(status)) {
            freeObjects(block, i);
            return status;
        }
    }
    objects = block;
    return OpcUa_Good;
}

OpcUa_StatusCode copyToObjects(const Type& type, OpcUa_Int32 length, const void* records,
                               OpcUa_ExtensionObject*& objects)
{
    OpcUa_StatusCode status = createObjects(type, length, objects);
    for (OpcUa_Int32 i = 0; i < length && OpcUa_IsNotBad(status); ++i) {
        status = type.CopyTo(recordAt(type, records, i), recordIn(objects[i]));
    }
    if (OpcUa_IsBad(status)) {
        freeObjects(objects, length);
    }
    return status;
}

bool holdsRecordOf(const Type& type, const OpcUa_ExtensionObject& object)
{
    if (object.Encoding != OpcUa_ExtensionObjectEncoding_EncodeableObject) {
        return false;
    }
    const auto& body = object.Body.EncodeableObject;
    return body.Object != nullptr && body.Type != nullptr && body.Type->TypeId == type.TypeId &&
           body.Type->NamespaceUri == nullptr && body.Type->AllocationSize == type.AllocationSize;
}

/// The extension objects of a variant, when all of them hold records of the type.
OpcUa_StatusCode findObjects(const Type& type, const OpcUa_Variant& variant, UaArrayBlock& found)
{
    if (!UaBuiltInArray_IsArrayOf(variant, OpcUaType_ExtensionObject)) {
        return OpcUa_BadTypeMismatch;
    }
    const UaArrayBlock view = UaBuiltInArray_View(variant);
    const auto* objects = static_cast<const OpcUa_ExtensionObject*>(view.elements);
    for (OpcUa_Int32 i = 0; i < view.length; ++i) {
        if (!holdsRecordOf(type, objects[i])) {
            return OpcUa_BadTypeMismatch;
        }
    }
    found = view;
    return OpcUa_Good;
}

/// Fills a new block by `transfer(from, to)`, which gets one record of the variant and an initialised
/// one.
template <typename Transfer>
OpcUa_StatusCode fromVariant(const Type& type, const OpcUa_Variant& variant, UaArrayBlock& block,
                             Transfer transfer)
{
    UaArrayBlock source;
    OpcUa_StatusCode status = findObjects(type, variant, source);
    if (OpcUa_IsBad(status) || source.length == 0) {
        return status;
    }
    const OpcUa_ElementTraits traits = OpcUa_ElementTraits_FromEncodeableType(type);
    void* records = UaArray_CreateBlock(traits, source.length);
    if (records == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    auto* objects = static_cast<OpcUa_ExtensionObject*>(source.elements);
    for (OpcUa_Int32 i = 0; i < source.length && OpcUa_IsNotBad(status); ++i) {
        status = transfer(recordIn(objects[i]), recordAt(type, records, i));
    }
    if (OpcUa_IsBad(status)) {
        OpcUa_Elements_Free(traits, records, source.length);
        return status;
    }
    block = {source.length, records};
    return status;
}

} // namespace

OpcUa_StatusCode UaServiceRecordArray_CopyToVariant(const OpcUa_EncodeableType& type,
                                                    OpcUa_Int32 length, const void* records,
                                                    OpcUa_Variant& variant)
{
    OpcUa_ExtensionObject* objects = nullptr;
    const OpcUa_StatusCode status = copyToObjects(type, length, records, objects);
    if (OpcUa_IsBad(status)) {
        OpcUa_Variant_Clear(&variant);
        return status;
    }
    UaBuiltInArray_MoveToVariant(OpcUaType_ExtensionObject, length, objects, variant);
    return status;
}

OpcUa_StatusCode UaServiceRecordArray_MoveToVariant(const OpcUa_EncodeableType& type,
                                                    OpcUa_Int32 length, void* records,
                                                    OpcUa_Variant& variant)
{
    OpcUa_ExtensionObject* objects = nullptr;
    const OpcUa_StatusCode status = createObjects(type, length, objects);
    if (OpcUa_IsBad(status)) {
        OpcUa_Variant_Clear(&variant);
        return status;
    }
    for (OpcUa_Int32 i = 0; i < length; ++i) {
        std::memcpy(recordIn(objects[i]), recordAt(type, records, i), type.AllocationSize);
    }
    OpcUa_Memory_Free(records);
    UaBuiltInArray_MoveToVariant(OpcUaType_ExtensionObject, length, objects, variant);
    return status;
}

OpcUa_StatusCode UaServiceRecordArray_CopyFromVariant(const OpcUa_EncodeableType& type,
                                                      const OpcUa_Variant& variant,
                                                      UaArrayBlock& block)
{
    return fromVariant(type, variant, block, type.CopyTo);
}

OpcUa_StatusCode UaServiceRecordArray_TakeFromVariant(const OpcUa_EncodeableType& type,
                                                      OpcUa_Variant& variant, UaArrayBlock& block)
{
    return fromVariant(type, variant, block, [&type](void* from, void* to) {
        std::memcpy(to, from, type.AllocationSize);
        type.Initialize(from);
        return OpcUa_Good;
    });
}
