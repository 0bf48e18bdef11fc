#include "stack/opcua_proxystubconfiguration.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "platform/trace.h"

#include <cstdio>
#include <mutex>
#include <type_traits>

namespace {

using Record = OpcUa_ProxyStubConfiguration;

static_assert(sizeof(Record) == 21 * sizeof(OpcUa_UInt32) && std::is_trivially_copyable_v<Record>);

struct ChosenValue
{
    OpcUa_Int32 Record::*field;
    OpcUa_Int32 value;
};

constexpr ChosenValue chosenValues[] = {
    {&Record::iSerializer_MaxAlloc, 16777216},
    {&Record::iSerializer_MaxStringLength, 16777216},
    {&Record::iSerializer_MaxByteStringLength, 16777216},
    {&Record::iSerializer_MaxArrayLength, 65536},
    {&Record::iSerializer_MaxMessageSize, 16777216},
    {&Record::iSecureListener_ThreadPool_MinThreads, 5},
    {&Record::iSecureListener_ThreadPool_MaxThreads, 5},
    {&Record::iSecureListener_ThreadPool_MaxJobs, 20},
    {&Record::iReserved_First, 300000},
    {&Record::iReserved_Second, 3600000},
    {&Record::iTcpListener_DefaultChunkSize, 65536},
    {&Record::iTcpConnection_DefaultChunkSize, 65536},
    {&Record::iTcpTransport_MaxMessageLength, 16777216},
    {&Record::iTcpTransport_MaxChunkCount, 0},
};

enum class FieldKind
{
    Boolean,
    Unsigned,
    Signed
};

struct TextField
{
    const char* key;
    FieldKind kind;
    OpcUa_UInt32 Record::*unsignedField;
    OpcUa_Int32 Record::*signedField;

    constexpr TextField(const char* name, OpcUa_Int32 Record::*field)
        : key(name)
        , kind(FieldKind::Signed)
        , unsignedField(nullptr)
        , signedField(field)
    {
    }

    constexpr TextField(const char* name, FieldKind unsignedKind, OpcUa_UInt32 Record::*field)
        : key(name)
        , kind(unsignedKind)
        , unsignedField(field)
        , signedField(nullptr)
    {
    }
};

constexpr TextField textFields[] = {
    {"TraceEnabled", FieldKind::Boolean, &Record::TraceEnabled},
    {"TraceLevel", FieldKind::Unsigned, &Record::TraceLevel},
    {"iSerializer_MaxAlloc", &Record::iSerializer_MaxAlloc},
    {"iSerializer_MaxStringLength", &Record::iSerializer_MaxStringLength},
    {"iSerializer_MaxByteStringLength", &Record::iSerializer_MaxByteStringLength},
    {"iSerializer_MaxArrayLength", &Record::iSerializer_MaxArrayLength},
    {"iSerializer_MaxMessageSize", &Record::iSerializer_MaxMessageSize},
    {"bSecureListener_ThreadPool_Enabled", FieldKind::Boolean,
     &Record::bSecureListener_ThreadPool_Enabled},
    {"iSecureListener_ThreadPool_MinThreads", &Record::iSecureListener_ThreadPool_MinThreads},
    {"iSecureListener_ThreadPool_MaxThreads", &Record::iSecureListener_ThreadPool_MaxThreads},
    {"iSecureListener_ThreadPool_MaxJobs", &Record::iSecureListener_ThreadPool_MaxJobs},
    {"bSecureListener_ThreadPool_BlockOnAdd", FieldKind::Boolean,
     &Record::bSecureListener_ThreadPool_BlockOnAdd},
    {"uSecureListener_ThreadPool_Timeout", FieldKind::Unsigned,
     &Record::uSecureListener_ThreadPool_Timeout},
    {"bTcpListener_ClientThreadsEnabled", FieldKind::Boolean,
     &Record::bTcpListener_ClientThreadsEnabled},
    {"iTcpListener_DefaultChunkSize", &Record::iTcpListener_DefaultChunkSize},
    {"iTcpConnection_DefaultChunkSize", &Record::iTcpConnection_DefaultChunkSize},
    {"iTcpTransport_MaxMessageLength", &Record::iTcpTransport_MaxMessageLength},
    {"iTcpTransport_MaxChunkCount", &Record::iTcpTransport_MaxChunkCount},
    {"bTcpStream_ExpectWriteToBlock", FieldKind::Boolean, &Record::bTcpStream_ExpectWriteToBlock},
};

constexpr Record resetRecord()
{
    Record record{};
    for (const ChosenValue& chosen : chosenValues) {
        record.*chosen.field = -1;
    }
    record.uSecureListener_ThreadPool_Timeout = 0xFFFFFFFFu;
    return record;
}

constexpr Record withChosenValues(Record record)
{
    for (const ChosenValue& chosen : chosenValues) {
        if (record.*chosen.field == -1) {
            record.*chosen.field = chosen.value;
        }
    }
    return record;
}

struct GlobalState
{
    std::mutex mutex;
    Record record = withChosenValues(resetRecord());
    OpcUa_UInt32 proxyCount = 0;
    OpcUa_UInt32 stubCount = 0;
    char* text = nullptr;

    constexpr GlobalState() = default;
    ~GlobalState() { OpcUa_Memory_Free(text); }
    GlobalState(const GlobalState&) = delete;
    GlobalState& operator=(const GlobalState&) = delete;
};

constinit GlobalState state;

/// The characters that the field takes, or would take if there were room.
int printField(const Record& record, const TextField& field, char* text, OpcUa_UInt32 room)
{
    if (field.kind == FieldKind::Signed) {
        return std::snprintf(text, room, "%s:%i\\", field.key, record.*field.signedField);
    }
    const OpcUa_UInt32 value = record.*field.unsignedField;
    const OpcUa_UInt32 shown = field.kind == FieldKind::Boolean && value != 0 ? 1 : value;
    return std::snprintf(text, room, "%s:%u\\", field.key, shown);
}

void add(OpcUa_UInt32& count)
{
    const std::scoped_lock lock(state.mutex);
    ++count;
}

void remove(OpcUa_UInt32& count)
{
    const std::scoped_lock lock(state.mutex);
    if (count > 0) {
        --count;
    }
}

} // namespace

void OpcUa_ProxyStubConfiguration_Initialize(OpcUa_ProxyStubConfiguration* configuration)
{
    if (configuration != nullptr) {
        *configuration = resetRecord();
    }
}

OpcUa_StatusCode
OpcUa_ProxyStubConfiguration_ToText(const OpcUa_ProxyStubConfiguration* configuration, char* text,
                                    OpcUa_UInt32 size)
{
    if (configuration == nullptr || text == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_StatusCode whenFull = OpcUa_BadInternalError;
    OpcUa_UInt32 used = 0;
    for (const TextField& field : textFields) {
        const int length = printField(*configuration, field, text + used, size - used);
        if (length < 1 || static_cast<OpcUa_UInt32>(length) >= size - used) {
            return whenFull;
        }
        used += static_cast<OpcUa_UInt32>(length);
        whenFull = OpcUa_BadOutOfMemory;
    }
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_ProxyStub_ReInitialize(const OpcUa_ProxyStubConfiguration* configuration)
{
    const std::scoped_lock lock(state.mutex);
    if (configuration == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    if (state.proxyCount != 0 || state.stubCount != 0) {
        return OpcUa_BadInvalidState;
    }
    state.record = withChosenValues(*configuration);
    OpcUa_Trace_Configure(state.record.TraceEnabled != 0, state.record.TraceLevel);
    return OpcUa_Good;
}

OpcUa_StatusCode
OpcUa_ProxyStub_GetConfiguration(const OpcUa_ProxyStubConfiguration** configuration)
{
    if (configuration == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *configuration = &state.record;
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_ProxyStub_GetConfigurationString(const char** text)
{
    if (text == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *text = nullptr;
    const std::scoped_lock lock(state.mutex);
    if (state.text == nullptr) {
        state.text =
            static_cast<char*>(OpcUa_Memory_AllocZeroed(OpcUa_ProxyStubConfiguration_TextSize, 1));
    }
    if (state.text == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    const OpcUa_StatusCode status = OpcUa_ProxyStubConfiguration_ToText(
        &state.record, state.text, OpcUa_ProxyStubConfiguration_TextSize);
    if (OpcUa_IsNotBad(status)) {
        *text = state.text;
    }
    return status;
}

void OpcUa_ProxyStub_AddProxy()
{
    add(state.proxyCount);
}

void OpcUa_ProxyStub_RemoveProxy()
{
    remove(state.proxyCount);
}

void OpcUa_ProxyStub_AddStub()
{
    add(state.stubCount);
}

void OpcUa_ProxyStub_RemoveStub()
{
    remove(state.stubCount);
}
