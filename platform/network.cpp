#include "platform/network.h"

#include "platform/socketlibrary.h"
#include "platform/status.h"

namespace {

OpcUa_NetworkModule module{};
bool isStarted = false;

OpcUa_StatusCode makeMutexes()
{
    const OpcUa_StatusCode status = OpcUa_P_Mutex_Create(&module.socketMutex);
    return OpcUa_IsBad(status) ? status : OpcUa_P_Mutex_Create(&module.clientThreadMutex);
}

} // namespace

const OpcUa_NetworkModule& OpcUa_P_Socket_Network()
{
    return module;
}

OpcUa_StatusCode OpcUa_P_Socket_InitializeNetwork()
{
    if (isStarted) {
        return OpcUa_BadInvalidState;
    }
    OpcUa_StatusCode status = OpcUa_P_SocketLibrary_Start();
    if (OpcUa_IsBad(status)) {
        return status;
    }
    isStarted = true;
    module.clientThreadCount = 0;
    status = makeMutexes();
    if (OpcUa_IsBad(status)) {
        OpcUa_P_Socket_CleanupNetwork();
    }
    return status;
}

void OpcUa_P_Socket_CleanupNetwork()
{
    if (!isStarted) {
        return;
    }
    OpcUa_P_Mutex_Delete(&module.clientThreadMutex);
    OpcUa_P_Mutex_Delete(&module.socketMutex);
    OpcUa_P_SocketLibrary_Stop();
    isStarted = false;
}
