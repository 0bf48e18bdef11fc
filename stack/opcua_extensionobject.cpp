#include "stack/opcua_extensionobject.h"

#include "platform/status.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_recordpattern.h"
#include "stack/opcua_scalars.h"

namespace {

OpcUa_StatusCode fillRecord(const OpcUa_ExtensionObject& source, OpcUa_ExtensionObject& copy)
{
    const auto& body = source.Body.EncodeableObject;
    if (body.Object == nullptr || body.Type == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    copy.Body.EncodeableObject = {nullptr, body.Type};
    return OpcUa_Elements_Copy(OpcUa_ElementTraits_FromEncodeableType(*body.Type), body.Object, 1,
                               &copy.Body.EncodeableObject.Object);
}

OpcUa_StatusCode fillBody(const OpcUa_ExtensionObject& source, OpcUa_ExtensionObject& copy)
{
    switch (source.Encoding) {
    case OpcUa_ExtensionObjectEncoding_None:
        return OpcUa_Good;
    case OpcUa_ExtensionObjectEncoding_Binary:
    case OpcUa_ExtensionObjectEncoding_Xml:
        OpcUa_ByteString_Initialize(&copy.Body.Binary);
        return OpcUa_ByteString_CopyTo(&source.Body.Binary, &copy.Body.Binary);
    case OpcUa_ExtensionObjectEncoding_EncodeableObject:
        return fillRecord(source, copy);
    default:
        return OpcUa_BadInvalidArgument;
    }
}

OpcUa_StatusCode fillExtensionObject(const OpcUa_ExtensionObject& source,
                                     OpcUa_ExtensionObject& copy)
{
    const OpcUa_StatusCode status = OpcUa_ExpandedNodeId_CopyTo(&source.TypeId, &copy.TypeId);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    copy.Encoding = source.Encoding;
    copy.BodySize = source.BodySize;
    return fillBody(source, copy);
}

OpcUa_Int32 compareRecords(const OpcUa_ExtensionObject& left, const OpcUa_ExtensionObject& right)
{
    const auto& leftBody = left.Body.EncodeableObject;
    const auto& rightBody = right.Body.EncodeableObject;
    if (leftBody.Type == nullptr || rightBody.Type == nullptr ||
        leftBody.Type->Compare != rightBody.Type->Compare) {
        return 1;
    }
    return OpcUa_Elements_Compare(OpcUa_ElementTraits_FromEncodeableType(*leftBody.Type),
                                  leftBody.Object, rightBody.Object, 1);
}

OpcUa_Int32 compareBodies(const OpcUa_ExtensionObject& left, const OpcUa_ExtensionObject& right)
{
    switch (left.Encoding) {
    case OpcUa_ExtensionObjectEncoding_None:
        return 0;
    case OpcUa_ExtensionObjectEncoding_Binary:
    case OpcUa_ExtensionObjectEncoding_Xml:
        return OpcUa_ByteString_Compare(&left.Body.Binary, &right.Body.Binary);
    case OpcUa_ExtensionObjectEncoding_EncodeableObject:
        return compareRecords(left, right);
    default:
        return 1;
    }
}

OpcUa_Int32 compareExtensionObjects(const OpcUa_ExtensionObject& left,
                                    const OpcUa_ExtensionObject& right)
{
    const OpcUa_Int32 order = OpcUa_ExpandedNodeId_Compare(&left.TypeId, &right.TypeId);
    if (order != 0) {
        return order;
    }
    if (left.Encoding != right.Encoding) {
        return OpcUa_Scalar_CompareSmallInteger<OpcUa_UInt32>(left.Encoding, right.Encoding);
    }
    if (left.BodySize != right.BodySize) {
        return OpcUa_Int32_Compare(&left.BodySize, &right.BodySize);
    }
    return compareBodies(left, right);
}

void freeRecord(const OpcUa_ExtensionObject& object)
{
    const auto& body = object.Body.EncodeableObject;
    if (body.Type != nullptr) {
        OpcUa_Elements_Free(OpcUa_ElementTraits_FromEncodeableType(*body.Type), body.Object, 1);
    }
}

} // namespace

void OpcUa_ExtensionObject_Initialize(OpcUa_ExtensionObject* object)
{
    if (object != nullptr) {
        *object = {};
    }
}

void OpcUa_ExtensionObject_Clear(OpcUa_ExtensionObject* object)
{
    if (object == nullptr) {
        return;
    }
    OpcUa_ExpandedNodeId_Clear(&object->TypeId);
    if (object->Encoding == OpcUa_ExtensionObjectEncoding_Binary ||
        object->Encoding == OpcUa_ExtensionObjectEncoding_Xml) {
        OpcUa_ByteString_Clear(&object->Body.Binary);
    } else if (object->Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject) {
        freeRecord(*object);
    }
    OpcUa_ExtensionObject_Initialize(object);
}

OpcUa_StatusCode OpcUa_ExtensionObject_CopyTo(const OpcUa_ExtensionObject* source,
                                              OpcUa_ExtensionObject* destination)
{
    return OpcUa_Record_CopyTo<OpcUa_ExtensionObject_Initialize, OpcUa_ExtensionObject_Clear>(
        source, destination, fillExtensionObject);
}

OpcUa_Int32 OpcUa_ExtensionObject_Compare(const OpcUa_ExtensionObject* left,
                                          const OpcUa_ExtensionObject* right)
{
    if (left == right) {
        return 0;
    }
    // From either side: this type tells a null pointer apart but doesn't order it.
    if (left == nullptr || right == nullptr) {
        return 1;
    }
    return compareExtensionObjects(*left, *right);
}
