#pragma once

#include "platform/types.h"

// Limits and tuning values of the stack: one record for the whole process. It is handed over at the
// start and read by encoders, decoders and transports from any thread without a lock. That is safe
// because it changes only while no proxy and no stub exists. The functions that change or count take
// the record's own lock and are safe against each other.

/// The record. In the signed fields -1 leaves the choice to the stack and 0 is no limit; sizes and
/// lengths are in bytes, array lengths in elements, time spans in milliseconds. Every field has 32
/// bits; a boolean is 0 or anything else.
struct OpcUa_ProxyStubConfiguration
{
    OpcUa_UInt32 TraceEnabled;
    OpcUa_UInt32 TraceLevel;                     ///< Mask of level bits.
    OpcUa_Int32 iSerializer_MaxAlloc;            ///< -1: 16777216.
    OpcUa_Int32 iSerializer_MaxStringLength;     ///< -1: 16777216.
    OpcUa_Int32 iSerializer_MaxByteStringLength; ///< -1: 16777216.
    OpcUa_Int32 iSerializer_MaxArrayLength;      ///< -1: 65536.
    OpcUa_Int32 iSerializer_MaxMessageSize;      ///< -1: 16777216.
    OpcUa_UInt32 bSecureListener_ThreadPool_Enabled;
    OpcUa_Int32 iSecureListener_ThreadPool_MinThreads; ///< -1: 5.
    OpcUa_Int32 iSecureListener_ThreadPool_MaxThreads; ///< -1: 5.
    OpcUa_Int32 iSecureListener_ThreadPool_MaxJobs;    ///< -1: 20.
    OpcUa_UInt32 bSecureListener_ThreadPool_BlockOnAdd;
    OpcUa_UInt32 uSecureListener_ThreadPool_Timeout; ///< All bits set: none.
    OpcUa_Int32 iReserved_First;                     ///< -1: 300000. Not in the text form.
    OpcUa_Int32 iReserved_Second;                    ///< -1: 3600000. Not in the text form.
    OpcUa_UInt32 bTcpListener_ClientThreadsEnabled;
    OpcUa_Int32 iTcpListener_DefaultChunkSize;   ///< -1: 65536.
    OpcUa_Int32 iTcpConnection_DefaultChunkSize; ///< -1: 65536.
    OpcUa_Int32 iTcpTransport_MaxMessageLength;  ///< -1: 16777216.
    OpcUa_Int32 iTcpTransport_MaxChunkCount;     ///< -1: 0.
    OpcUa_UInt32 bTcpStream_ExpectWriteToBlock;
};

/// Bytes that the longest text form needs, its end included.
inline constexpr OpcUa_UInt32 OpcUa_ProxyStubConfiguration_TextSize = 801;

/// Resets a record: -1 in every signed field and all bits of the time-out, 0 in the rest. A null
/// pointer is ignored.
void OpcUa_ProxyStubConfiguration_Initialize(OpcUa_ProxyStubConfiguration* configuration);

/// Writes the text form "TraceEnabled:1\TraceLevel:32\...": key, colon, value and a backslash for each
/// field in the record's order, less the two reserved ones. `size` is the room in bytes, with the end.
/// `BadInvalidArgument` for null, `BadInternalError` when there is no room for the first field and
/// `BadOutOfMemory` for any other; what fitted stays in `text` then.
[[nodiscard]] OpcUa_StatusCode
OpcUa_ProxyStubConfiguration_ToText(const OpcUa_ProxyStubConfiguration* configuration, char* text,
                                    OpcUa_UInt32 size);

/// Copies a record into the process's own, with the stack's choice in place of each -1. The trace's
/// switch and levels follow it at once. `BadInvalidArgument` for null and `BadInvalidState` while a
/// proxy or stub exists; the old values stay then.
[[nodiscard]] OpcUa_StatusCode
OpcUa_ProxyStub_ReInitialize(const OpcUa_ProxyStubConfiguration* configuration);

/// Hands out the process's record, for reading. Before the first record is set it holds the stack's
/// own choice everywhere. `BadInvalidArgument` for null.
[[nodiscard]] OpcUa_StatusCode
OpcUa_ProxyStub_GetConfiguration(const OpcUa_ProxyStubConfiguration** configuration);

/// Hands out the text form of the process's record. The text belongs to the stack and holds until the
/// next call. `BadInvalidArgument` for null; with another failure, such as `BadOutOfMemory` for the
/// text's block, `text` is null.
[[nodiscard]] OpcUa_StatusCode OpcUa_ProxyStub_GetConfigurationString(const char** text);

/// Counts a proxy, which is the client's end of a connection. While one exists the record stays.
void OpcUa_ProxyStub_AddProxy();

/// Takes a proxy away; without one nothing happens.
void OpcUa_ProxyStub_RemoveProxy();

/// Counts a stub, which is the server's end. While one exists the record stays.
void OpcUa_ProxyStub_AddStub();

/// Takes a stub away; without one nothing happens.
void OpcUa_ProxyStub_RemoveStub();
