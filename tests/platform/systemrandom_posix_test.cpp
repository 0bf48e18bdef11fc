#include "platform/status.h"
#include "platform/systemrandom.h"

#include <gtest/gtest.h>

#include <sys/mman.h>

namespace {

TEST(SystemRandom, failing_source_is_told)
{
    // The system refuses to write to a page without access rights.
    constexpr OpcUa_UInt32 size = 4096;
    void* page = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(page, MAP_FAILED);
    EXPECT_EQ(OpcUa_P_SystemRandom_Fill(page, size), OpcUa_BadResourceUnavailable);
    EXPECT_EQ(munmap(page, size), 0);
}

} // namespace
