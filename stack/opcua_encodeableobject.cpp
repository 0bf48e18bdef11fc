#include "stack/opcua_encodeableobject.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_binarydecoder.h"
#include "stack/opcua_binaryencoder.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_memorystream.h"
#include "stack/opcua_messagecontext.h"

namespace {

/// Holds most messages; larger ones double it.
constexpr OpcUa_UInt32 initialStreamSize = 1024;

OpcUa_UInt32 maxStreamSize(const OpcUa_MessageContext& context)
{
    return context.MaxMessageSize < 0 ? 0 : static_cast<OpcUa_UInt32>(context.MaxMessageSize);
}

/// Calls `work()` with an opened encoder or decoder, and closes and deletes that.
template <typename Coder, typename Stream, typename Work>
OpcUa_StatusCode withOpened(OpcUa_StatusCode (*create)(Coder**), Stream* stream,
                            const OpcUa_MessageContext* context, Work work)
{
    Coder* coder = nullptr;
    OpcUa_StatusCode status = create(&coder);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    status = coder->Interface->Open(coder, stream, context);
    if (OpcUa_IsNotBad(status)) {
        status = work(coder);
    }
    coder->Interface->Delete(&coder);
    return status;
}

OpcUa_StatusCode write(const OpcUa_EncodeableType& type, const void* record,
                       const OpcUa_MessageContext& context, OpcUa_OutputStream* stream)
{
    return withOpened(OpcUa_BinaryEncoder_Create, stream, &context,
                      [&](OpcUa_Encoder* encoder) { return type.Encode(record, encoder); });
}

OpcUa_StatusCode read(const OpcUa_EncodeableType& type, OpcUa_InputStream* stream,
                      const OpcUa_MessageContext& context, void* record)
{
    return withOpened(OpcUa_BinaryDecoder_Create, stream, &context,
                      [&](OpcUa_Decoder* decoder) { return type.Decode(record, decoder); });
}

} // namespace

OpcUa_StatusCode OpcUa_EncodeableObject_Create(const OpcUa_EncodeableType* type, void** object)
{
    if (object != nullptr) {
        *object = nullptr;
    }
    if (type == nullptr || object == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    void* created = OpcUa_Memory_Alloc(type->AllocationSize);
    if (created == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    type->Initialize(created);
    *object = created;
    return OpcUa_Good;
}

void OpcUa_EncodeableObject_Delete(const OpcUa_EncodeableType* type, void** object)
{
    if (type != nullptr && object != nullptr) {
        OpcUa_Elements_Free(OpcUa_ElementTraits_FromEncodeableType(*type), *object, 1);
        *object = nullptr;
    }
}

OpcUa_StatusCode OpcUa_EncodeableObject_CreateExtension(const OpcUa_EncodeableType* type,
                                                        OpcUa_ExtensionObject* extension,
                                                        void** object)
{
    if (object != nullptr) {
        *object = nullptr;
    }
    if (type == nullptr || extension == nullptr || object == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_ExtensionObject_Clear(extension);
    const OpcUa_StatusCode status = OpcUa_EncodeableObject_Create(type, object);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    if (type->NamespaceUri == nullptr) {
        extension->TypeId.NodeId.Identifier.Numeric = type->BinaryEncodingTypeId;
    }
    extension->Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
    extension->Body.EncodeableObject = {*object, type};
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_EncodeableObject_Encode(const OpcUa_EncodeableType* type, const void* record,
                                               const OpcUa_MessageContext* context,
                                               OpcUa_OutputStream** stream)
{
    if (stream != nullptr) {
        *stream = nullptr;
    }
    if (type == nullptr || record == nullptr || context == nullptr || stream == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_OutputStream* output = nullptr;
    OpcUa_StatusCode status =
        OpcUa_MemoryOutputStream_Create(initialStreamSize, maxStreamSize(*context), &output);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    status = write(*type, record, *context, output);
    if (OpcUa_IsBad(status)) {
        output->Interface->Delete(&output);
    }
    *stream = output;
    return status;
}

OpcUa_StatusCode OpcUa_EncodeableObject_Decode(const OpcUa_EncodeableType* type,
                                               OpcUa_InputStream* stream,
                                               const OpcUa_MessageContext* context, void** record)
{
    if (record != nullptr) {
        *record = nullptr;
    }
    if (type == nullptr || stream == nullptr || context == nullptr || record == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    void* created = nullptr;
    OpcUa_StatusCode status = OpcUa_EncodeableObject_Create(type, &created);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    status = read(*type, stream, *context, created);
    if (OpcUa_IsBad(status)) {
        OpcUa_EncodeableObject_Delete(type, &created);
    }
    *record = created;
    return status;
}
