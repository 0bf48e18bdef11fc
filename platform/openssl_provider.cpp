// Only the old interface tells whose random source is in use.
#define OPENSSL_SUPPRESS_DEPRECATED

#include "platform/openssl_provider.h"

#include "platform/allocator.h"
#include "platform/buildinformation.h"
#include "platform/cryptobytes.h"
#include "platform/mutex.h"
#include "platform/openssl_handles.h"
#include "platform/status.h"
#include "platform/systemrandom.h"
#include "platform/threadid.h"
#include "platform/trace.h"

#include <openssl/crypto.h>
#include <openssl/rand.h>
#include <openssl/x509_vfy.h>

#include <cstddef>
#include <cstdint>

namespace {

struct ProviderState
{
    int lockCount = 0;
    OpcUa_Mutex* locks = nullptr;
    int storeIndex = -1;
};

ProviderState state;

void* allocateForLibrary(std::size_t size, const char* /*file*/, int /*line*/)
{
    return OpcUa_Memory_Alloc(size);
}

void* reallocateForLibrary(void* block, std::size_t size, const char* /*file*/, int /*line*/)
{
    // The library takes a size of 0 for a release.
    if (size == 0) {
        OpcUa_Memory_Free(block);
        return nullptr;
    }
    return OpcUa_Memory_ReAlloc(block, size);
}

void freeForLibrary(void* block, const char* /*file*/, int /*line*/)
{
    OpcUa_Memory_Free(block);
}

void deleteLocks()
{
    for (int i = 0; i < state.lockCount; ++i) {
        OpcUa_P_Mutex_Delete(&state.locks[i]);
    }
    OpcUa_Memory_Free(state.locks);
    state.locks = nullptr;
    state.lockCount = 0;
}

OpcUa_StatusCode makeLocks()
{
    const int count = CRYPTO_num_locks();
    // NOLINTNEXTLINE(bugprone-sizeof-expression): the handles themselves are the elements
    constexpr std::size_t handleSize = sizeof(OpcUa_Mutex);
    state.locks = static_cast<OpcUa_Mutex*>(
        OpcUa_Memory_AllocZeroed(static_cast<std::size_t>(count), handleSize));
    if (state.locks == nullptr) {
        OpcUa_Trace(
            OpcUa_TraceLevel_Error,
            "OpcUa_P_OpenSSL_Initialize: Could not allocate memory for %u requested OpenSSL "
            "mutexes!\n",
            static_cast<unsigned>(count));
        return OpcUa_BadOutOfMemory;
    }
    for (; state.lockCount < count; ++state.lockCount) {
        const OpcUa_StatusCode status = OpcUa_P_Mutex_Create(&state.locks[state.lockCount]);
        if (OpcUa_IsBad(status)) {
            OpcUa_Trace(OpcUa_TraceLevel_Error,
                        "OpcUa_P_OpenSSL_Initialize: Could not initialize all %u requested OpenSSL "
                        "mutexes!\n",
                        static_cast<unsigned>(count));
            return status;
        }
    }
    return OpcUa_Good;
}

/// False when the system gives no seed; asking it again then would never end.
bool seed()
{
    while (RAND_status() != 1) {
        if (RAND_poll() != 1) {
            return false;
        }
    }
    return true;
}

/// The library's own source takes its seed from the system when it is first used. To make it costs
/// most of the library's start, so that the start only asks whether the system can give one.
bool canSeed()
{
    return RAND_get_rand_method() == RAND_OpenSSL()
               ? OpcUa_IsGood(OpcUa_P_SystemRandom_Initialize())
               : seed();
}

OpcUa_StatusCode addVersions()
{
    struct Field
    {
        const char* prefix;
        int version;
    };
    static constexpr Field fields[] = {{"", OPENSSL_VERSION},
                                       {"OpenSSL ", OPENSSL_BUILT_ON},
                                       {"OpenSSL ", OPENSSL_DIR},
                                       {"OpenSSL built for ", OPENSSL_PLATFORM},
                                       {"OpenSSL built with ", OPENSSL_CFLAGS}};
    for (const Field& field : fields) {
        const OpcUa_StatusCode status =
            OpcUa_P_BuildInformation_Add(field.prefix, OpenSSL_version(field.version));
        if (OpcUa_IsBad(status)) {
            return status;
        }
    }
    return OpcUa_Good;
}

/// The library never uses an index twice, so that one serves all starts.
OpcUa_StatusCode makeStoreIndex()
{
    if (state.storeIndex >= 0) {
        return OpcUa_Good;
    }
    static char name[] = "store index";
    state.storeIndex = X509_STORE_get_ex_new_index(0, name, nullptr, nullptr, nullptr);
    if (state.storeIndex < 0) {
        OpcUa_Trace(OpcUa_TraceLevel_Error, "OpcUa_P_OpenSSL_Initialize: Could not get user data "
                                            "index from X509 store\n");
        return OpcUa_BadResourceUnavailable;
    }
    return OpcUa_Good;
}

OpcUa_StatusCode startLibrary()
{
    OpcUa_StatusCode status = makeLocks();
    if (OpcUa_IsBad(status)) {
        return status;
    }
    constexpr std::uint64_t options = OPENSSL_INIT_ADD_ALL_CIPHERS | OPENSSL_INIT_ADD_ALL_DIGESTS |
                                      OPENSSL_INIT_LOAD_CRYPTO_STRINGS;
    if (OPENSSL_init_crypto(options, nullptr) != 1) {
        return OpcUa_BadUnexpectedError;
    }
    if (!canSeed()) {
        return OpcUa_Bad;
    }
    status = addVersions();
    return OpcUa_IsBad(status) ? status : makeStoreIndex();
}

} // namespace

OpcUa_StatusCode OpcUa_P_OpenSSL_Initialize()
{
    if (state.locks != nullptr) {
        return OpcUa_Good;
    }
    // Refused once the library has allocated. It then keeps the C library's functions, which are
    // behind the platform's allocator too.
    CRYPTO_set_mem_functions(allocateForLibrary, reallocateForLibrary, freeForLibrary);
    const OpenSslErrorScope errors;
    const OpcUa_StatusCode status = startLibrary();
    if (OpcUa_IsBad(status)) {
        OpcUa_P_BuildInformation_Restore();
        OpcUa_P_OpenSSL_Cleanup();
    }
    return status;
}

void OpcUa_P_OpenSSL_Cleanup()
{
    ERR_clear_error();
    deleteLocks();
}

int OpcUa_P_OpenSSL_GetLockCount()
{
    return state.lockCount;
}

void OpcUa_P_OpenSSL_LockCallback(int mode, int number, const char* file, int line)
{
    if (number < 0 || number >= state.lockCount) {
        OpcUa_Trace(OpcUa_TraceLevel_Error,
                    "OpcUa_P_OpenSSL_LockCallback: requested lock number (%i) is out of range! "
                    "(File: %s, Line: %i)",
                    number, file != nullptr ? file : "", line);
        return;
    }
    if ((static_cast<unsigned>(mode) & CRYPTO_LOCK) != 0) {
        OpcUa_P_Mutex_Lock(state.locks[number]);
    } else {
        OpcUa_P_Mutex_Unlock(state.locks[number]);
    }
}

OpcUa_UInt32 OpcUa_P_OpenSSL_ThreadIdCallback()
{
    return OpcUa_P_Thread_GetCurrentId();
}

int OpcUa_P_OpenSSL_GetStoreIndex()
{
    return state.storeIndex;
}

OpcUa_StatusCode OpcUa_P_OpenSSL_GenerateRandomKey(const OpcUa_CryptoProvider* provider,
                                                   OpcUa_Int32 length, OpcUa_Key* key)
{
    constexpr OpcUa_UInt32 longestKey = 1024;
    if (key == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const OpcUa_UInt32 wanted = chooseKeyLength(provider, length);
    if (wanted == 0 || wanted > longestKey || !hasRoom(key->Key, wanted)) {
        return OpcUa_BadInvalidArgument;
    }
    key->Type = OpcUa_Crypto_KeyType_Random;
    key->Key.Length = static_cast<OpcUa_Int32>(wanted);
    if (key->Key.Data == nullptr) {
        return OpcUa_Good;
    }
    const OpenSslErrorScope errors;
    return seed() && RAND_bytes(key->Key.Data, static_cast<int>(wanted)) == 1 ? OpcUa_Good
                                                                              : OpcUa_Bad;
}
