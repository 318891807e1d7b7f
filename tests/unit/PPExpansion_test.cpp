#include "PPExpansion.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string textOf(PP_CTextReader reader) { return std::string(reader.GetReadPtr(), reader.Readable()); }

PP_CTextReader stretch(std::string const& text, size_t at, size_t length) {
    return PP_CTextReader(text.data() + at, length);
}

TEST(PPExpansion, StretchesThatFollowEachOtherStayAViewAndOthersStartACopy) {
    std::string const source = "f(a b)";
    PP_CExpansionBuilder out;
    out.AddStretch(nullptr, stretch(source, 2, 1));
    out.AddStretch(nullptr, stretch(source, 3, 1));
    out.AddStretch(nullptr, stretch(source, 4, 1));
    PP_CExpansionText view = out.Take();
    EXPECT_EQ(view.Reader().GetReadPtr(), source.data() + 2);
    EXPECT_EQ(textOf(view.Reader()), "a b");
    EXPECT_TRUE(out.Take().IsEmpty());

    out.Add(view);
    out.AddStretch(nullptr, stretch(source, 0, 1));
    out.AddChar('!');
    PP_CExpansionText copy = out.Take();
    EXPECT_NE(copy.Reader().GetReadPtr(), source.data() + 2);
    EXPECT_EQ(textOf(copy.Reader()), "a bf!");
}

TEST(PPExpansion, APieceKeepsItsBufferAfterTheWholeHasGone) {
    PP_CExpansionText piece;
    {
        PP_CExpansionText whole = PP_CExpansionText::Copy(PP_CTextReader("outer(inner)", 12));
        PP_CTextReader all = whole.Reader();
        piece = whole.Piece(PP_CTextReader(all.GetReadPtr() + 6, 5));
    }
    EXPECT_EQ(textOf(piece.Reader()), "inner");

    // A piece of another buffer does not continue this one, even where the bytes would.
    PP_CExpansionBuilder out;
    out.Add(piece);
    out.Add(PP_CExpansionText::Copy(PP_CTextReader(")", 1)));
    EXPECT_EQ(textOf(out.Take().Reader()), "inner)");
}

TEST(PPExpansion, DetachCopiesAViewOfStableMemory) {
    char source[] = "abc";
    PP_CExpansionText text = PP_CExpansionText::Stable(PP_CTextReader(source, 3));
    text.Detach();
    source[0] = 'x';
    EXPECT_EQ(textOf(text.Reader()), "abc");
}

}  // namespace
