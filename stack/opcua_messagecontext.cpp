#include "stack/opcua_messagecontext.h"

#include "platform/status.h"
#include "stack/opcua_proxystubconfiguration.h"

void OpcUa_MessageContext_Initialize(OpcUa_MessageContext* context)
{
    if (context == nullptr) {
        return;
    }
    *context = {};
    const OpcUa_ProxyStubConfiguration* configuration = nullptr;
    if (OpcUa_IsGood(OpcUa_ProxyStub_GetConfiguration(&configuration))) {
        context->MaxArrayLength = configuration->iSerializer_MaxArrayLength;
        context->MaxStringLength = configuration->iSerializer_MaxStringLength;
        context->MaxByteStringLength = configuration->iSerializer_MaxByteStringLength;
        context->MaxMessageSize = configuration->iSerializer_MaxMessageSize;
    }
}
