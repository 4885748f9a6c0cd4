// A test that fails, for failure_is_seen.sh; it belongs to no other run.
#include <gtest/gtest.h>

TEST(Self, Fails) { EXPECT_EQ(1, 2); }
