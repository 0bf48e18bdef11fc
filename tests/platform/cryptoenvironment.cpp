#include "platform/openssl_provider.h"
#include "platform/status.h"

#include <gtest/gtest.h>

namespace {

/// Starts the library before the first test, as the platform does, so that it allocates through the
/// platform's allocator and its allocations can be made to fail.
class CryptoEnvironment : public testing::Environment
{
public:
    void SetUp() override { ASSERT_EQ(OpcUa_P_OpenSSL_Initialize(), OpcUa_Good); }
    void TearDown() override { OpcUa_P_OpenSSL_Cleanup(); }
};

const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new CryptoEnvironment); // owned by the framework

} // namespace
