#include "RCNestingGuard.h"

#include <gtest/gtest.h>

#include <string>

#include "MsgIds.h"
#include "RCTestScanner.h"

namespace {

// Every level a guard took comes back when it ends, refused levels included, so that one input
// nested too deep does not leave the next one with less room.
TEST(RCNestingGuard, RefusesPastTheLimitAndGivesEveryLevelBack) {
    RCTestScanner scanner("x");
    RCNesting nesting{2, kMsg_OutOfMemory};
    testing::internal::CaptureStderr();
    {
        RCNestingGuard outer(nesting);
        EXPECT_TRUE(outer.Deeper(scanner));
        {
            RCNestingGuard inner(nesting);
            EXPECT_TRUE(inner.Deeper(scanner));
            EXPECT_FALSE(inner.Deeper(scanner));
            EXPECT_FALSE(inner.Deeper(scanner));
            EXPECT_EQ(4, nesting.fDepth);
        }
        EXPECT_EQ(1, nesting.fDepth);
    }
    EXPECT_EQ(0, nesting.fDepth);
    std::string const messages = testing::internal::GetCapturedStderr();
    std::string const once = "File t.vd; Line 1 # Error: Out of memory.\n";
    EXPECT_EQ(once + once, messages);
}

}  // namespace
