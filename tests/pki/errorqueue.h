#pragma once

#include <gtest/gtest.h>
#include <openssl/err.h>

/// Every test of this folder begins with an empty error queue of OpenSSL and has to leave it empty.
class PkiTest : public ::testing::Test
{
protected:
    void SetUp() override { ERR_clear_error(); }
    void TearDown() override { EXPECT_EQ(ERR_peek_error(), 0u); }
};
