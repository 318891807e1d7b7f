#include "SearchPath.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "IncDir.h"
#include "Msgs.h"

namespace fs = std::filesystem;

namespace {

// A fresh folder per test and a search path; progress messages are shown so that the "found"
// reports can be counted. Folders are spelled as the search path spells them: with a final '/'.
class SearchPathTest : public ::testing::Test {
protected:
    void SetUp() override {
        root = fs::temp_directory_path() / ("velor_search_" + std::to_string(::getpid()));
        fs::remove_all(root);
        savedMask = Msgs::GetMask();
        Msgs::SetMask(savedMask | 2);
        ASSERT_EQ(path.ISearchPath(), 0);
    }
    void TearDown() override {
        Msgs::SetMask(savedMask);
        fs::remove_all(root);
    }

    std::string Folder(std::string const& name, char const* file = nullptr) {
        fs::create_directories(root / name);
        std::string folder = (root / name).string() + "/";
        if (file) std::ofstream(folder + file) << "text";
        return folder;
    }
    IncDir* Directory(std::string const& name) { return IncDir::FindIncDir(name.c_str(), true); }

    // The result of a lookup, with the standard error that it wrote.
    std::pair<IncFile*, std::string> Find(std::string const& name) {
        ::testing::internal::CaptureStderr();
        IncFile* file = path.FindIncFile(name.c_str());
        return {file, ::testing::internal::GetCapturedStderr()};
    }

    fs::path root;
    unsigned char savedMask = 0;
    RCSearchPath path;
};

TEST_F(SearchPathTest, TheFirstDirectoryInOrderWinsAndCaseDoesNotMakeANewOne) {
    std::string second = Folder("second", "a.h"), first = Folder("first", "a.h");
    EXPECT_FALSE(path.AddDirectory(Directory(second)));
    EXPECT_TRUE(path.AddDirectory(Directory(root.string() + "/SECOND/")));
    EXPECT_FALSE(path.AddDirectory(Directory(first)));
    EXPECT_EQ(path.DirectoryCount(), 2);

    auto [file, messages] = Find("a.h");
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->Directory(), Directory(second));
    EXPECT_EQ(messages, "... found 'a.h' in '" + second + "'\n");
}

TEST_F(SearchPathTest, AFoundNameIsCachedAndAMissingOneIsSoughtAgain) {
    std::string dir = Folder("cache");
    path.AddDirectory(Directory(dir));
    EXPECT_EQ(Find("late.h").first, nullptr);

    Folder("cache", "late.h");
    IncFile* file = Find("late.h").first;
    ASSERT_NE(file, nullptr);
    fs::remove(dir + "late.h");
    EXPECT_EQ(Find("late.h"), std::make_pair(file, std::string()));
}

TEST_F(SearchPathTest, AFullPathBypassesTheListAndRegistersItsDirectory) {
    std::string elsewhere = Folder("elsewhere", "abs.h");
    path.AddDirectory(Directory(Folder("listed", "abs.h")));
    IncFile* file = Find(elsewhere + "abs.h").first;
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->Directory(), IncDir::FindIncDir(elsewhere.c_str(), false));
    EXPECT_STREQ(file->Filename(), "abs.h");
}

TEST_F(SearchPathTest, CreateGivesARecordForAMissingFileAndValidNameFitsTheBuffer) {
    ::testing::internal::CaptureStderr();
    IncFile* bare = IncFile::FindIncFile("in.vd", true);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "... found 'in.vd' in ''\n");
    EXPECT_STREQ(bare->Directory()->DirectoryName(), "");

    IncFile* file = IncFile::FindIncFile("/some/dir/file.h", true);
    char buffer[8];
    EXPECT_STREQ(file->ValidName(buffer, sizeof buffer), "/some/d");
    // "/" is its own last component and a full path at once; its lookup must still come back.
    EXPECT_NE(IncFile::FindIncFile("/", true), nullptr);
}

}  // namespace
