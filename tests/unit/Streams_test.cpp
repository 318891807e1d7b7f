#include <gtest/gtest.h>

#include <string>

#include "CFile_MacFile.h"
#include "Streams.h"
#include "TempFolder.h"

namespace {

TEST(Streams, BufferReadStopsAtTheEndAndCountsWhatWasThere) {
    char const text[] = "abcd";
    RSBuffer buffer(text, 4);
    CFile_RSBuffer file(buffer);
    char got[8] = {};
    unsigned long actual = 99;
    file.SetCursor(1);
    EXPECT_EQ(kStreamEndOfData, file.Read(got, 8, &actual));
    EXPECT_EQ(3u, actual);
    EXPECT_EQ("bcd", std::string(got, 3));
    unsigned long cursor = 0, size = 0;
    file.GetCursor(&cursor);
    file.GetSize(&size);
    EXPECT_EQ(4u, cursor);
    EXPECT_EQ(4u, size);
    EXPECT_EQ(-1, file.GetChar());
    EXPECT_EQ(kStreamEndOfData, file.Read(got, 1));
    file.SetCursor(3);
    EXPECT_EQ('d', file.GetChar());
}

TEST(Streams, BufferWriteFillsUpToItsLimitAndNoFurther) {
    char storage[4] = {'-', '-', '-', '-'};
    RWSBuffer buffer(storage, 3);
    CFile_RWSBuffer file(buffer);
    EXPECT_EQ('x', file.PutChar('x'));
    unsigned long actual = 0;
    EXPECT_EQ(kStreamEndOfData, file.Write("yzw", 3, &actual));
    EXPECT_EQ(2u, actual);
    EXPECT_EQ(-1, file.PutChar('!'));
    EXPECT_EQ("xyz-", std::string(storage, 4));
    file.SetCursor(0);
    EXPECT_EQ('x', file.GetChar());
}

TEST(Streams, DataAreaFileGrowsOnWriteAndReadsShortWithoutError) {
    DataArea area;
    CFile_DataArea file(area);
    EXPECT_EQ(-1, file.GetChar());
    EXPECT_EQ(0, file.Write("hello", 5));
    unsigned long size = 0;
    file.GetSize(&size);
    EXPECT_EQ(5u, size);
    file.SetCursor(3);
    char got[8] = {};
    unsigned long actual = 0;
    EXPECT_EQ(0, file.Read(got, 8, &actual));
    EXPECT_EQ(2u, actual);
    EXPECT_EQ(-1, file.GetChar());
    file.SetCursor(0);
    EXPECT_EQ('h', file.GetChar());
}

TEST(Streams, MacFileForwardsToTheOpenForkAndRefusesAClosedOne) {
    TempFolder folder;
    RsrcMacFile fork(false);
    fork.SetPermission(3);
    fork.Specify((folder / "data").c_str());
    ASSERT_EQ(0, fork.CreateFile());
    CFile_MacFile file(fork);
    EXPECT_EQ(kFileNotOpenErr, file.Write("x", 1));
    unsigned long size = 0;
    EXPECT_EQ(kFileNotOpenErr, file.GetSize(&size));
    ASSERT_EQ(0, fork.OpenFile(true));
    EXPECT_EQ(0, file.Write("abc", 3));
    EXPECT_EQ(0, file.SetCursor(1));
    EXPECT_EQ('b', file.GetChar());
    char got[8] = {};
    unsigned long actual = 0;
    EXPECT_EQ(kEndOfFileErr, file.Read(got, 8, &actual));
    EXPECT_EQ(1u, actual);
    EXPECT_EQ(-1, file.GetChar());
    EXPECT_EQ(kPositionErr, file.SetCursor(4));
    unsigned long cursor = 0;
    file.GetCursor(&cursor);
    EXPECT_EQ(3u, cursor);
    file.GetSize(&size);
    EXPECT_EQ(3u, size);
}

}  // namespace
