#include "DependencyRecord.h"

#include <gtest/gtest.h>

#include "TempFolder.h"

TEST(DependencyRecord, EscapesWhatMakeWouldSplitOrExpand) {
    EXPECT_EQ("plain/path.h", DependencyRecord::Escaped("plain/path.h"));
    EXPECT_EQ("a\\ b\\\tc", DependencyRecord::Escaped("a b\tc"));
    EXPECT_EQ("$$(HOME)\\#x", DependencyRecord::Escaped("$(HOME)#x"));
    // A backslash in front of a blank would otherwise swallow the escape.
    EXPECT_EQ("a\\\\\\ b", DependencyRecord::Escaped("a\\ b"));
    EXPECT_EQ("a\\b", DependencyRecord::Escaped("a\\b"));
}

TEST(DependencyRecord, ListsEachFileOnceAndGivesEmptyRulesOnlyToFilesNotNamedAsInput) {
    DependencyRecord record("deps.d", "out/r.rsrc");
    record.MarkInput("in.vd");
    for (auto path : {"in.vd", "a.h", "in.vd", "b.h", "a.h"}) record.Note(path);
    EXPECT_EQ("out/r.rsrc: \\\n  in.vd \\\n  a.h \\\n  b.h\n\na.h:\n\nb.h:\n", record.Text());
}

TEST(DependencyRecord, SettingGivesFileAndOptionalTarget) {
    EXPECT_EQ(nullptr, DependencyRecord::FromSetting(nullptr, "x"));
    EXPECT_EQ(nullptr, DependencyRecord::FromSetting("", "x"));
    for (auto setting : {"deps.d", "deps.d "}) {
        auto record = DependencyRecord::FromSetting(setting, "out/r.rsrc");
        EXPECT_EQ("deps.d", record->FileName());
        EXPECT_EQ("out/r.rsrc:\n", record->Text());
    }
    auto named = DependencyRecord::FromSetting("deps.d my target", "d");
    EXPECT_EQ("deps.d", named->FileName());
    EXPECT_EQ("my\\ target:\n", named->Text());
}

TEST(DependencyRecord, WriteReplacesALinkInsteadOfWritingThroughIt) {
    TempFolder temp;
    temp.Put("victim", "keep");
    std::filesystem::create_symlink(temp / "victim", temp / "deps.d");
    DependencyRecord record(temp / "deps.d", "t");
    ASSERT_TRUE(record.Write());
    EXPECT_EQ("keep", temp.Read("victim"));
    EXPECT_FALSE(std::filesystem::is_symlink(temp / "deps.d"));
    EXPECT_EQ("t:\n", temp.Read("deps.d"));
    EXPECT_EQ(2, std::distance(std::filesystem::directory_iterator(temp / ""), {}));
}

TEST(DependencyRecord, FailedWriteLeavesNoTemporaryBehind) {
    TempFolder temp;
    std::filesystem::create_directories(temp / "deps.d/inside");
    EXPECT_FALSE(DependencyRecord(temp / "deps.d", "t").Write());
    EXPECT_FALSE(DependencyRecord(temp / "absent/deps.d", "t").Write());
    EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(temp / ""), {}));
}
