#include <gtest/gtest.h>

#include "Platform.h"

namespace {

// A handle grown a byte at a time, as the data areas grow theirs, reports exactly the size asked
// for and keeps every byte written before each step, also across a shrink.
TEST(Platform, HandleGrownInSmallStepsKeepsItsBytesAndItsExactSize) {
    Handle handle = NewHandleClear(0);
    ASSERT_NE(handle, nullptr);
    for (unsigned long size = 1; size <= 5000; ++size) {
        SetHandleSize(handle, size);
        ASSERT_EQ(MemError(), 0);
        ASSERT_EQ(GetHandleSize(handle), static_cast<long>(size));
        static_cast<unsigned char*>(*handle)[size - 1] = static_cast<unsigned char>(size);
    }
    SetHandleSize(handle, 10);
    EXPECT_EQ(GetHandleSize(handle), 10);
    SetHandleSize(handle, 20000);
    for (unsigned long i = 0; i < 10; ++i) EXPECT_EQ(static_cast<unsigned char*>(*handle)[i], i + 1);
    DisposeHandle(handle);
}

}  // namespace
