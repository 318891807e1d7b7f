#include <gtest/gtest.h>

#include <string>

#include "PPText.h"

namespace {

std::string textOf(PP_CTextWriter const& writer) { return std::string(writer.GetStart(), writer.Readable()); }

class PPText : public ::testing::Test {
protected:
    void TearDown() override {
        memory.ReleaseTemp();
        EXPECT_EQ(memory.GetAllocPermCount(), 0u);
    }
    PP_CMemoryManager_Basic memory;
};

TEST_F(PPText, TempWriterDoublesFrom32) {
    PP_CTextWriter writer(nullptr, 0);
    {
        PP_CWriterTemp helper(&memory, &writer);
        EXPECT_TRUE(memory.IsTempMemInUse());
        for (int i = 0; i < 32; ++i)
            helper.AddChar('a' + i % 26);
        EXPECT_EQ(writer.Capacity(), 32u);
        helper.AddChar('!');
        EXPECT_EQ(writer.Capacity(), 64u);
        EXPECT_EQ(writer.Readable(), 33u);
        EXPECT_EQ(textOf(writer).substr(30), "ef!");
    }
    EXPECT_FALSE(memory.IsTempMemInUse());

    PP_CTextWriter bulk(nullptr, 0);
    PP_CWriterTemp helper(&memory, &bulk);
    std::string hundred(100, 'x');
    helper.AddText(PP_CTextReader(hundred.data(), hundred.size()));
    EXPECT_EQ(bulk.Capacity(), 128u);
    helper.AddString(nullptr);
    EXPECT_EQ(textOf(bulk), hundred);
}

TEST_F(PPText, PermWriterGrowsByRoundedSteps) {
    struct Case {
        unsigned long request, capacity;
    } const cases[] = {{256, 512}, {255, 256}, {1, 256}};
    for (Case const& c : cases) {
        PP_CTextWriter writer(nullptr, 0);
        PP_CWriterPerm helper(&memory, &writer);
        helper.Expand(c.request);
        EXPECT_EQ(writer.Capacity(), c.capacity) << c.request;
        memory.FreePerm(writer.GetStart());
    }
    PP_CTextWriter writer(nullptr, 0);
    PP_CWriterPerm helper(&memory, &writer);
    helper.AddString("keep");
    helper.Expand(300);
    EXPECT_EQ(writer.Capacity(), 768u);
    EXPECT_EQ(textOf(writer), "keep");
    EXPECT_EQ(memory.GetAllocPermCount(), 1u);
    memory.FreePerm(writer.GetStart());
}

TEST_F(PPText, ReaderOverWriterIsASnapshot) {
    char buffer[8];
    PP_CTextWriter writer(buffer, sizeof buffer);
    writer.PutChar('a');
    PP_CTextReader reader(writer);
    writer.PutChar('b');
    EXPECT_EQ(reader.Readable(), 1u);
    PP_CTextReader copy = reader;
    EXPECT_EQ(copy.GetChar(), 'a');
    EXPECT_TRUE(copy.IsEOF());
    EXPECT_FALSE(reader.IsEOF());
    writer.ReWrite();
    EXPECT_EQ(writer.Readable(), 0u);
    EXPECT_EQ(writer.Capacity(), 8u);
}

} // namespace
