#include "PerResourceFiles.h"

#include <gtest/gtest.h>

#include "TempFolder.h"

TEST(RemoveOldResourceFiles, RemovesResourceFilesAtAnyDepthAndNothingElse) {
    TempFolder temp;
    temp.Put("out/vlbk_TEXT/1.vlbk", "x");
    temp.Put("out/deep/er/still/2.vlbk");
    temp.Put("out/timestamp.vlbk", "1");
    temp.Put("out/.vlbk");
    temp.Put("out/vdFilePath", "in.vd");
    temp.Put("out/notes.vlbk.txt");
    temp.Put("out/dir.vlbk/inside.txt");
    temp.Put("elsewhere/3.vlbk");
    std::filesystem::create_symlink(temp / "elsewhere/3.vlbk", temp / "out/link.vlbk");

    RemoveOldResourceFiles(temp / "out/");

    EXPECT_FALSE(temp.Has("out/vlbk_TEXT/1.vlbk"));
    EXPECT_FALSE(temp.Has("out/deep/er/still/2.vlbk"));
    EXPECT_FALSE(temp.Has("out/timestamp.vlbk"));
    EXPECT_FALSE(temp.Has("out/.vlbk"));
    EXPECT_TRUE(temp.Has("out/vlbk_TEXT"));
    EXPECT_TRUE(temp.Has("out/vdFilePath"));
    EXPECT_TRUE(temp.Has("out/notes.vlbk.txt"));
    EXPECT_TRUE(temp.Has("out/dir.vlbk/inside.txt"));
    EXPECT_TRUE(temp.Has("out/link.vlbk"));
    EXPECT_TRUE(temp.Has("elsewhere/3.vlbk"));
}

TEST(RemoveOldResourceFiles, LeavesFilesWhosePathHoldsBlanksQuotesOrBackslashes) {
    TempFolder temp;
    for (std::string name : {"vlbk_STR /1.vlbk", "a b.vlbk", "tab\t.vlbk", "it's.vlbk", "say\"x\".vlbk", "back\\.vlbk"})
        temp.Put("out/" + name);
    temp.Put("out/plain.vlbk");
    temp.Put("my out/plain.vlbk");

    RemoveOldResourceFiles(temp / "out/");
    RemoveOldResourceFiles(temp / "my out/");

    for (std::string name : {"vlbk_STR /1.vlbk", "a b.vlbk", "tab\t.vlbk", "it's.vlbk", "say\"x\".vlbk", "back\\.vlbk"})
        EXPECT_TRUE(temp.Has("out/" + name)) << name;
    EXPECT_FALSE(temp.Has("out/plain.vlbk"));
    EXPECT_TRUE(temp.Has("my out/plain.vlbk"));
}

TEST(RemoveOldResourceFiles, MissingFolderIsNoError) {
    TempFolder temp;
    RemoveOldResourceFiles(temp / "absent/");
    EXPECT_FALSE(temp.Has("absent"));
}
