#include "platform/timer.h"

#include "platform/timerservice.h"

namespace {

TimerService& service()
{
    static TimerService instance;
    return instance;
}

} // namespace

OpcUa_StatusCode OpcUa_P_TimerService_Start()
{
    return service().start();
}

OpcUa_StatusCode OpcUa_P_TimerService_Stop()
{
    return service().stop();
}

OpcUa_StatusCode OpcUa_P_Timer_Create(OpcUa_Timer* timer, OpcUa_UInt32 interval,
                                      OpcUa_TimerCallback timerCallback,
                                      OpcUa_TimerCallback killCallback, void* callbackData)
{
    return service().create(timer, interval, timerCallback, killCallback, callbackData);
}

OpcUa_StatusCode OpcUa_P_Timer_Delete(OpcUa_Timer* timer)
{
    return service().remove(timer);
}
