#include "platform/buildinformation.h"
#include "platform/openssl_provider.h"
#include "platform/status.h"
#include "platform/threadid.h"
#include "tests/platform/cryptosupport.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/eightthreads.h"
#include "tests/support/tracerecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The random source of the library can only be replaced through its old interface.
#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/crypto.h>
#include <openssl/rand.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ProviderTest : public testing::Test
{
protected:
    ProviderTest() { EXPECT_EQ(OpcUa_P_OpenSSL_Initialize(), OpcUa_Good); }
    ~ProviderTest() override
    {
        OpcUa_P_OpenSSL_Cleanup();
        OpcUa_P_BuildInformation_Restore();
    }
};

/// A random source that a test drives.
struct RandomSource
{
    static inline int status = 1;
    static inline int polls = 0;
    static inline int pollsUntilSeeded = 0;
    static inline int bytesResult = 1;

    RandomSource()
    {
        status = 1;
        polls = 0;
        pollsUntilSeeded = 0;
        bytesResult = 1;
        // The library's own source is made first, since a stranger in its place at the end of the
        // process makes the library lose some bytes.
        RAND_status();
        RAND_set_rand_method(&method);
    }
    ~RandomSource() { RAND_set_rand_method(nullptr); }
    RandomSource(const RandomSource&) = delete;
    RandomSource& operator=(const RandomSource&) = delete;

    static int bytes(unsigned char* buffer, int count)
    {
        std::fill_n(buffer, count, static_cast<unsigned char>(0x5A));
        return bytesResult;
    }
    static int add(const void* /*buffer*/, int /*count*/, double /*entropy*/)
    {
        ++polls;
        status = polls == pollsUntilSeeded ? 1 : 0;
        return pollsUntilSeeded != 0 ? 1 : 0;
    }
    static int askStatus() { return status; }

    static inline const RAND_METHOD method = {nullptr, bytes, nullptr, add, bytes, askStatus};
};

TEST(Provider, nothing_is_there_before_the_start)
{
    OpcUa_P_OpenSSL_Cleanup();
    EXPECT_EQ(OpcUa_P_OpenSSL_GetLockCount(), 0);
    const TraceRecorder recorder(OpcUa_TraceLevel_Error);
    OpcUa_P_OpenSSL_LockCallback(1, 0, "file.c", 12);
    EXPECT_THAT(TraceRecorder::messages(),
                ElementsAre("OpcUa_P_OpenSSL_LockCallback: requested lock number (0) is out of "
                            "range! (File: file.c, Line: 12)"));
}

TEST(Provider, start_and_cleanup_can_be_repeated)
{
    for (int round = 0; round < 1000; ++round) {
        ASSERT_EQ(OpcUa_P_OpenSSL_Initialize(), OpcUa_Good);
        ASSERT_EQ(OpcUa_P_OpenSSL_GetLockCount(), CRYPTO_num_locks());
        OpcUa_P_OpenSSL_Cleanup();
        OpcUa_P_OpenSSL_Cleanup();
        ASSERT_EQ(OpcUa_P_OpenSSL_GetLockCount(), 0);
        OpcUa_P_BuildInformation_Restore();
    }
}

TEST_F(ProviderTest, second_start_changes_nothing)
{
    const int index = OpcUa_P_OpenSSL_GetStoreIndex();
    const std::string information = OpcUa_P_BuildInformation_Get();
    EXPECT_EQ(OpcUa_P_OpenSSL_Initialize(), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_OpenSSL_GetStoreIndex(), index);
    EXPECT_EQ(OpcUa_P_BuildInformation_Get(), information);
    expectEmptyErrorQueue();
}

TEST_F(ProviderTest, version_strings_are_added_in_their_order)
{
    const std::string whole = OpcUa_P_BuildInformation_Get();
    OpcUa_P_BuildInformation_Restore();
    const std::string own = OpcUa_P_BuildInformation_Get();
    EXPECT_EQ(whole, own + "\\" + OpenSSL_version(OPENSSL_VERSION) + "\\OpenSSL " +
                         OpenSSL_version(OPENSSL_BUILT_ON) + "\\OpenSSL " +
                         OpenSSL_version(OPENSSL_DIR) + "\\OpenSSL built for " +
                         OpenSSL_version(OPENSSL_PLATFORM) + "\\OpenSSL built with " +
                         OpenSSL_version(OPENSSL_CFLAGS));
}

TEST_F(ProviderTest, store_index_holds_user_data_of_a_store)
{
    const int index = OpcUa_P_OpenSSL_GetStoreIndex();
    EXPECT_GE(index, 0);
    CRYPTO_EX_DATA data{};
    int value = 0;
    ASSERT_EQ(CRYPTO_new_ex_data(CRYPTO_EX_INDEX_X509_STORE, nullptr, &data), 1);
    EXPECT_EQ(CRYPTO_set_ex_data(&data, index, &value), 1);
    EXPECT_EQ(CRYPTO_get_ex_data(&data, index), &value);
    CRYPTO_free_ex_data(CRYPTO_EX_INDEX_X509_STORE, nullptr, &data);
}

TEST_F(ProviderTest, lock_number_equal_to_the_count_is_traced_and_touches_no_mutex)
{
    const int count = OpcUa_P_OpenSSL_GetLockCount();
    ASSERT_EQ(count, CRYPTO_num_locks());
    for (const int number : {count, count + 1, 0x7FFFFFFF, -1}) {
        for (const int mode : {1, 2}) {
            SCOPED_TRACE(number);
            const TraceRecorder recorder(OpcUa_TraceLevel_Error);
            OpcUa_P_OpenSSL_LockCallback(mode, number, "some/file.c", 345);
            EXPECT_THAT(TraceRecorder::messages(),
                        ElementsAre("OpcUa_P_OpenSSL_LockCallback: requested lock number (" +
                                    std::to_string(number) +
                                    ") is out of range! (File: some/file.c, Line: 345)"));
        }
    }
    const TraceRecorder recorder(OpcUa_TraceLevel_Error);
    OpcUa_P_OpenSSL_LockCallback(1, count, nullptr, 0);
    EXPECT_EQ(TraceRecorder::messages().size(), 1u);
}

TEST_F(ProviderTest, bit_0_of_the_mode_enters_the_lock_and_clear_leaves_it)
{
    struct Row
    {
        int enter;
        int leave;
    };
    for (const Row& row : {Row{CRYPTO_LOCK, CRYPTO_UNLOCK}, Row{1, 0},
                           Row{CRYPTO_LOCK | CRYPTO_WRITE, CRYPTO_UNLOCK | CRYPTO_WRITE},
                           Row{CRYPTO_LOCK | CRYPTO_READ, CRYPTO_UNLOCK | CRYPTO_READ}}) {
        int counter = 0;
        inEightThreads([&] {
            for (int i = 0; i < 500; ++i) {
                OpcUa_P_OpenSSL_LockCallback(row.enter, 0, nullptr, 0);
                ++counter;
                OpcUa_P_OpenSSL_LockCallback(row.leave, 0, nullptr, 0);
            }
        });
        EXPECT_EQ(counter, 4000);
    }
    // To leave a lock that the thread doesn't hold changes nothing.
    OpcUa_P_OpenSSL_LockCallback(0, 0, nullptr, 0);
    OpcUa_P_OpenSSL_LockCallback(1, 0, nullptr, 0);
    std::thread other([] { OpcUa_P_OpenSSL_LockCallback(0, 0, nullptr, 0); });
    other.join();
    OpcUa_P_OpenSSL_LockCallback(0, 0, nullptr, 0);
}

TEST(Provider, thread_id_is_that_of_the_calling_thread)
{
    EXPECT_EQ(OpcUa_P_OpenSSL_ThreadIdCallback(), OpcUa_P_Thread_GetCurrentId());
    OpcUa_UInt32 other = 0;
    std::thread thread([&other] { other = OpcUa_P_OpenSSL_ThreadIdCallback(); });
    thread.join();
    EXPECT_NE(other, OpcUa_P_OpenSSL_ThreadIdCallback());
}

TEST(Provider, seeding_is_repeated_while_the_library_reports_too_little)
{
    RandomSource source;
    RandomSource::status = 0;
    RandomSource::pollsUntilSeeded = 5;
    EXPECT_EQ(OpcUa_P_OpenSSL_Initialize(), OpcUa_Good);
    EXPECT_EQ(RandomSource::polls, 5);
    OpcUa_P_OpenSSL_Cleanup();
    OpcUa_P_BuildInformation_Restore();
}

TEST(Provider, source_that_gives_no_seed_ends_the_start)
{
    const std::string own = OpcUa_P_BuildInformation_Get();
    RandomSource source;
    RandomSource::status = 0;
    EXPECT_EQ(OpcUa_P_OpenSSL_Initialize(), OpcUa_Bad);
    EXPECT_EQ(RandomSource::polls, 1);
    EXPECT_EQ(OpcUa_P_OpenSSL_GetLockCount(), 0);
    EXPECT_EQ(OpcUa_P_BuildInformation_Get(), own);
    expectEmptyErrorQueue();
}

/// Runs in a process of its own, since the library gives its index once only.
void failEveryAllocationOfTheStart()
{
    // The first failure comes before the library allocates, so that it gets the platform's allocator.
    OpcUa_Memory_SetFaultHook([](std::size_t size) { return size == sizeof(void*); });
    const OpcUa_StatusCode first = OpcUa_P_OpenSSL_Initialize();
    OpcUa_Memory_SetFaultHook(nullptr);
    // What the library makes once must not be what fails: it would remember the failure.
    OPENSSL_init_crypto(OPENSSL_INIT_ADD_ALL_CIPHERS | OPENSSL_INIT_ADD_ALL_DIGESTS |
                            OPENSSL_INIT_LOAD_CRYPTO_STRINGS,
                        nullptr);
    RAND_status();
    bool isRight = first == OpcUa_BadOutOfMemory;
    std::vector<std::string> traced;
    std::vector<OpcUa_StatusCode> statuses;
    forEveryFailingAllocation(
        [&traced] {
            const TraceRecorder recorder(OpcUa_TraceLevel_Error);
            const OpcUa_StatusCode status = OpcUa_P_OpenSSL_Initialize();
            traced.insert(traced.end(), TraceRecorder::messages().begin(),
                          TraceRecorder::messages().end());
            return status;
        },
        [&](OpcUa_StatusCode status) {
            statuses.push_back(status);
            if (OpcUa_IsGood(status)) {
                OpcUa_P_OpenSSL_Cleanup();
                OpcUa_P_BuildInformation_Restore();
            }
            isRight = isRight && OpcUa_P_OpenSSL_GetLockCount() == 0 &&
                      std::string(OpcUa_P_BuildInformation_Get()).find('\\') == std::string::npos;
        });
    const auto has = [&](OpcUa_StatusCode status) {
        return std::find(statuses.begin(), statuses.end(), status) != statuses.end();
    };
    const auto hasTraced = [&](const std::string& text) {
        return std::find(traced.begin(), traced.end(), text) != traced.end();
    };
    isRight =
        isRight && has(OpcUa_BadOutOfMemory) && has(OpcUa_BadResourceUnavailable) &&
        hasTraced("OpcUa_P_OpenSSL_Initialize: Could not allocate memory for 1 requested OpenSSL "
                  "mutexes!\n") &&
        hasTraced("OpcUa_P_OpenSSL_Initialize: Could not initialize all 1 requested OpenSSL "
                  "mutexes!\n") &&
        hasTraced("OpcUa_P_OpenSSL_Initialize: Could not get user data index from X509 store\n") &&
        OpcUa_P_OpenSSL_GetLockCount() == 1 && OpcUa_P_OpenSSL_GetStoreIndex() >= 0;
    OpcUa_P_OpenSSL_Cleanup();
    OpcUa_P_BuildInformation_Restore();
    std::exit(isRight ? 0 : 1);
}

TEST(ProviderDeathTest, every_failing_allocation_of_the_start_is_told_and_leaves_nothing_behind)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(failEveryAllocationOfTheStart(), testing::ExitedWithCode(0), "");
}

TEST_F(ProviderTest, random_key_has_the_wanted_length_and_type)
{
    for (const OpcUa_Int32 length : {1, 2, 16, 32, 1023, 1024}) {
        SCOPED_TRACE(length);
        Bytes bytes(static_cast<std::size_t>(length) + 1, 0xEE);
        OpcUa_Key key = keyOver(0, bytes);
        EXPECT_EQ(OpcUa_P_OpenSSL_GenerateRandomKey(nullptr, length, &key), OpcUa_Good);
        EXPECT_EQ(key.Key.Length, length);
        EXPECT_EQ(key.Type, OpcUa_Crypto_KeyType_Random);
        EXPECT_EQ(bytes.back(), 0xEE);
    }
}

TEST_F(ProviderTest, random_keys_differ)
{
    Bytes first(32);
    Bytes second(32);
    OpcUa_Key firstKey = keyOver(0, first);
    OpcUa_Key secondKey = keyOver(0, second);
    EXPECT_EQ(OpcUa_P_OpenSSL_GenerateRandomKey(nullptr, 32, &firstKey), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_OpenSSL_GenerateRandomKey(nullptr, 32, &secondKey), OpcUa_Good);
    EXPECT_NE(first, second);
    EXPECT_NE(first, Bytes(32));
}

TEST_F(ProviderTest, random_key_lengths_have_their_limits)
{
    struct Row
    {
        OpcUa_Int32 length;
        OpcUa_UInt32 providerLength;
        OpcUa_Int32 result; ///< 0 when it is refused.
    };
    for (const Row& row :
         {Row{0, 32, 0}, Row{1, 32, 1}, Row{1024, 32, 1024}, Row{1025, 32, 0},
          Row{0x7FFFFFFF, 32, 0}, Row{-1, 32, 32}, Row{-1000, 16, 16}, Row{-1, 0, 0},
          Row{-1, 1024, 1024}, Row{-1, 1025, 0}, Row{-1, 0xFFFFFFFF, 0}}) {
        SCOPED_TRACE(testing::Message() << row.length << " or " << row.providerLength);
        const OpcUa_CryptoProvider provider = {row.providerLength};
        OpcUa_Key key = {0, {-7, nullptr}};
        const bool isGood = row.result != 0;
        EXPECT_EQ(OpcUa_P_OpenSSL_GenerateRandomKey(&provider, row.length, &key),
                  isGood ? OpcUa_Good : OpcUa_BadInvalidArgument);
        EXPECT_EQ(key.Key.Length, isGood ? row.result : -7);
        EXPECT_EQ(key.Type, isGood ? OpcUa_Crypto_KeyType_Random : 0u);
    }
}

TEST_F(ProviderTest, random_key_arguments_are_checked)
{
    Bytes bytes(16, 0xEE);
    OpcUa_Key key = keyOver(0, bytes);
    EXPECT_EQ(OpcUa_P_OpenSSL_GenerateRandomKey(nullptr, 16, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_OpenSSL_GenerateRandomKey(nullptr, -1, &key), OpcUa_BadInvalidArgument);
    for (const OpcUa_Int32 room : {-1, 0, 15}) {
        key.Key.Length = room;
        EXPECT_EQ(OpcUa_P_OpenSSL_GenerateRandomKey(nullptr, 16, &key), OpcUa_BadInvalidArgument);
    }
    EXPECT_EQ(bytes, Bytes(16, 0xEE));
}

TEST_F(ProviderTest, failing_random_source_is_a_failure)
{
    Bytes bytes(16);
    OpcUa_Key key = keyOver(0, bytes);
    RandomSource source;
    EXPECT_EQ(OpcUa_P_OpenSSL_GenerateRandomKey(nullptr, 16, &key), OpcUa_Good);
    EXPECT_EQ(bytes, Bytes(16, 0x5A));
    RandomSource::bytesResult = 0;
    EXPECT_EQ(OpcUa_P_OpenSSL_GenerateRandomKey(nullptr, 16, &key), OpcUa_Bad);
    RandomSource::bytesResult = 1;
    RandomSource::status = 0;
    EXPECT_EQ(OpcUa_P_OpenSSL_GenerateRandomKey(nullptr, 16, &key), OpcUa_Bad);
    // With null data nobody asks the source.
    key.Key.Data = nullptr;
    EXPECT_EQ(OpcUa_P_OpenSSL_GenerateRandomKey(nullptr, 16, &key), OpcUa_Good);
    expectEmptyErrorQueue();
}

} // namespace
