#include "platform/openssl_provider.h"
#include "platform/status.h"

#include <gtest/gtest.h>
#include <openssl/rand.h>

namespace {

/// Starts the library before the first test, as the platform does, so that it allocates through the
/// platform's allocator and its allocations can be made to fail.
class CryptoEnvironment : public testing::Environment
{
public:
    void SetUp() override
    {
        ASSERT_EQ(OpcUa_P_OpenSSL_Initialize(), OpcUa_Good);
        // Has the library look its algorithms up: one that it can't while memory is short is missing
        // for good.
        ASSERT_EQ(RAND_status(), 1);
    }
    void TearDown() override { OpcUa_P_OpenSSL_Cleanup(); }
};

const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new CryptoEnvironment); // owned by the framework

} // namespace
