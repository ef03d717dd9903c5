#include "platform/linux/MemoryPrivacy.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>

TEST (MemoryPrivacy, ForbidsDumpsAndTracing)
{
    ASSERT_EQ (::prctl (PR_SET_DUMPABLE, 1, 0, 0, 0), 0);

    EXPECT_TRUE (platform::keepMemoryPrivate());
    EXPECT_EQ (::prctl (PR_GET_DUMPABLE, 0, 0, 0, 0), 0);
}
