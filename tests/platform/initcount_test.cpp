#include "platform/startup/initcount.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InitCountTest : public testing::Test
{
protected:
    InitCountTest()
    {
        calls().clear();
        startResult() = 0;
    }

    static std::vector<std::string>& calls()
    {
        static std::vector<std::string> list;
        return list;
    }

    static int& startResult()
    {
        static int result = 0;
        return result;
    }

    static int start()
    {
        calls().emplace_back("start");
        return startResult();
    }

    static void stop() { calls().emplace_back("stop"); }

    InitCount m_count{start, stop};
};

TEST_F(InitCountTest, cleanup_without_init_does_nothing)
{
    m_count.cleanup();
    m_count.cleanup();
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ(m_count.count(), 0u);
    EXPECT_EQ(m_count.init(), 0);
    EXPECT_EQ(m_count.count(), 1u);
}

TEST_F(InitCountTest, first_init_starts_and_last_cleanup_stops)
{
    EXPECT_EQ(m_count.init(), 0);
    EXPECT_THAT(calls(), ElementsAre("start"));
    m_count.cleanup();
    EXPECT_THAT(calls(), ElementsAre("start", "stop"));
    EXPECT_EQ(m_count.count(), 0u);
}

TEST_F(InitCountTest, two_inits_and_one_cleanup_leave_it_running)
{
    EXPECT_EQ(m_count.init(), 0);
    EXPECT_EQ(m_count.init(), 0);
    m_count.cleanup();
    EXPECT_THAT(calls(), ElementsAre("start"));
    EXPECT_EQ(m_count.count(), 1u);
    m_count.cleanup();
    EXPECT_THAT(calls(), ElementsAre("start", "stop"));
}

TEST_F(InitCountTest, failing_start_leaves_the_user_counted)
{
    startResult() = -1;
    EXPECT_EQ(m_count.init(), -1);
    EXPECT_EQ(m_count.count(), 1u);
    EXPECT_EQ(m_count.init(), 0);
    EXPECT_EQ(m_count.count(), 2u);
    EXPECT_THAT(calls(), ElementsAre("start"));
    m_count.cleanup();
    m_count.cleanup();
    EXPECT_THAT(calls(), ElementsAre("start", "stop"));
}

TEST_F(InitCountTest, it_starts_again_after_it_was_stopped)
{
    startResult() = -5;
    EXPECT_EQ(m_count.init(), -5);
    m_count.cleanup();
    startResult() = 0;
    EXPECT_EQ(m_count.init(), 0);
    m_count.cleanup();
    EXPECT_THAT(calls(), ElementsAre("start", "stop", "start", "stop"));
}

} // namespace
