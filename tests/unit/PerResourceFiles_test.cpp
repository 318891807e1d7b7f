#include "PerResourceFiles.h"

#include <gtest/gtest.h>

#include "TempFolder.h"

TEST(RemoveOldResourceFiles, RemovesResourceFilesAtAnyDepthAndNothingElse) {
    TempFolder temp;
    for (auto name : {"vlbk_TEXT/1.vlbk", "deep/er/2.vlbk", "timestamp.vlbk", ".vlbk", "vdFilePath", "notes.vlbk.txt",
                      "dir.vlbk/inside"})
        temp.Put(std::string("out/") + name);
    temp.Put("elsewhere/3.vlbk");
    std::filesystem::create_symlink(temp / "elsewhere/3.vlbk", temp / "out/link.vlbk");
    std::filesystem::create_symlink(temp / "nowhere", temp / "out/dangling.vlbk");
    std::filesystem::create_directory_symlink(temp / "elsewhere", temp / "out/into");

    RemoveOldResourceFiles(temp / "out/");
    RemoveOldResourceFiles(temp / "absent/");

    for (auto gone : {"vlbk_TEXT/1.vlbk", "deep/er/2.vlbk", "timestamp.vlbk", ".vlbk", "link.vlbk", "dangling.vlbk"})
        EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(temp / (std::string("out/") + gone)))) << gone;
    for (auto kept : {"vlbk_TEXT", "vdFilePath", "notes.vlbk.txt", "dir.vlbk/inside"})
        EXPECT_TRUE(temp.Has(std::string("out/") + kept)) << kept;
    EXPECT_TRUE(temp.Has("elsewhere/3.vlbk"));
}

// An unquoted list of names splits or quotes at these characters, so such files always stayed.
TEST(RemoveOldResourceFiles, LeavesFilesWhosePathHoldsBlanksQuotesOrBackslashes) {
    TempFolder temp;
    auto const odd = {"vlbk_STR /1.vlbk", "tab\t.vlbk", "it's.vlbk", "say\"x\".vlbk", "back\\.vlbk"};
    for (auto name : odd) temp.Put(std::string("out/") + name);
    temp.Put("my out/plain.vlbk");

    RemoveOldResourceFiles(temp / "out/");
    RemoveOldResourceFiles(temp / "my out/");

    for (auto name : odd) EXPECT_TRUE(temp.Has(std::string("out/") + name)) << name;
    EXPECT_TRUE(temp.Has("my out/plain.vlbk"));
}
