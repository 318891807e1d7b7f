#include "SearchPath.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "IncDir.h"
#include "Msgs.h"

namespace fs = std::filesystem;

namespace {

constexpr unsigned char kProgressBit = 2;

// A fresh folder per test, with helpers to place files and name sub-folders as the search path
// spells them: with a trailing '/'.
class SearchPathTest : public ::testing::Test {
protected:
    void SetUp() override {
        root = fs::temp_directory_path() /
               ("velor_search_" + std::to_string(::getpid()) + "_" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(root);
        fs::create_directories(root);
        savedMask = Msgs::GetMask();
        Msgs::SetMask(savedMask | kProgressBit);
        ASSERT_EQ(path.ISearchPath(), 0);
    }
    void TearDown() override {
        Msgs::SetMask(savedMask);
        fs::remove_all(root);
    }

    std::string Folder(std::string const& name) {
        fs::create_directories(root / name);
        return (root / name).string() + "/";
    }
    void Place(std::string const& folder, std::string const& file) {
        std::ofstream(folder + file) << "text";
    }
    IncDir* Directory(std::string const& name) { return IncDir::FindIncDir(name.c_str(), true); }

    // The standard error of a lookup, which carries the progress message of a find.
    std::string Messages(IncFile*& result, char const* name) {
        ::testing::internal::CaptureStderr();
        result = path.FindIncFile(name);
        return ::testing::internal::GetCapturedStderr();
    }

    fs::path root;
    unsigned char savedMask = 0;
    RCSearchPath path;
};

TEST_F(SearchPathTest, TheFirstDirectoryInOrderWins) {
    std::string first = Folder("first"), second = Folder("second");
    Place(first, "a.h");
    Place(second, "a.h");
    Place(second, "b.h");
    path.AddDirectory(Directory(second));
    path.AddDirectory(Directory(first));

    IncFile* a = path.FindIncFile("a.h");
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->Directory(), Directory(second));
    EXPECT_STREQ(a->Filename(), "a.h");
    EXPECT_EQ(path.FindIncFile("b.h")->Directory(), Directory(second));
    EXPECT_EQ(path.FindIncFile("c.h"), nullptr);
}

TEST_F(SearchPathTest, ADirectoryStaysOnceWhateverItsCase) {
    std::string lower = Folder("dir");
    std::string upper = root.string() + "/DIR/";
    EXPECT_FALSE(path.AddDirectory(Directory(lower)));
    EXPECT_TRUE(path.AddDirectory(Directory(lower)));
    EXPECT_TRUE(path.AddDirectory(Directory(upper)));
    EXPECT_EQ(path.DirectoryCount(), 1);
    EXPECT_NE(Directory(upper), Directory(lower));
}

TEST_F(SearchPathTest, AFoundNameIsAnsweredFromTheCache) {
    std::string dir = Folder("cache");
    path.AddDirectory(Directory(dir));
    IncFile* file = nullptr;
    EXPECT_EQ(Messages(file, "late.h"), "");
    EXPECT_EQ(file, nullptr);

    Place(dir, "late.h");
    EXPECT_EQ(Messages(file, "late.h"), "... found 'late.h' in '" + dir + "'\n");
    ASSERT_NE(file, nullptr);

    fs::remove(dir + "late.h");
    IncFile* again = nullptr;
    EXPECT_EQ(Messages(again, "late.h"), "");
    EXPECT_EQ(again, file);
}

TEST_F(SearchPathTest, AFullPathBypassesTheListAndRegistersItsDirectory) {
    std::string elsewhere = Folder("elsewhere");
    Place(elsewhere, "abs.h");
    path.AddDirectory(Directory(Folder("listed")));
    std::string full = elsewhere + "abs.h";

    IncFile* file = path.FindIncFile(full.c_str());
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->Directory(), IncDir::FindIncDir(elsewhere.c_str(), false));
    EXPECT_STREQ(file->Filename(), "abs.h");
    EXPECT_EQ(path.FindIncFile((elsewhere + "missing.h").c_str()), nullptr);
}

TEST_F(SearchPathTest, ALookupBesideAFileIsNotCachedAndReportsEachTime) {
    std::string dir = Folder("beside");
    Place(dir, "near.h");
    IncDir* directory = Directory(dir);
    for (int i = 0; i < 2; ++i) {
        ::testing::internal::CaptureStderr();
        IncFile* file = directory->FindIncFile("near.h", false);
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), "... found 'near.h' in '" + dir + "'\n");
        ASSERT_NE(file, nullptr);
    }
    EXPECT_EQ(directory->FindIncFile("far.h", false), nullptr);
}

TEST_F(SearchPathTest, CreateGivesARecordForAFileThatIsNotThere) {
    std::string missing = Folder("create") + "nope.vd";
    IncFile* file = IncFile::FindIncFile(missing.c_str(), true);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(IncFile::FindIncFile(missing.c_str(), false), nullptr);

    char buffer[1024];
    EXPECT_EQ(std::string(file->ValidName(buffer, sizeof buffer)), missing);
}

TEST(IncFile, ABareNameLivesInTheCurrentDirectory) {
    ::testing::internal::CaptureStderr();
    unsigned char mask = Msgs::GetMask();
    Msgs::SetMask(mask | kProgressBit);
    IncFile* file = IncFile::FindIncFile("in.vd", true);
    Msgs::SetMask(mask);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "... found 'in.vd' in ''\n");
    EXPECT_STREQ(file->Directory()->DirectoryName(), "");
}

TEST(IncFile, ValidNameIsCutToTheBuffer) {
    IncFile* file = IncFile::FindIncFile("/some/dir/file.h", true);
    char buffer[8];
    EXPECT_STREQ(file->ValidName(buffer, sizeof buffer), "/some/d");
    EXPECT_STREQ(file->ValidName(buffer, 1), "");
}

// "/" is its own last component and a full path at once; its lookup must still come back.
TEST(IncFile, TheRootAloneEndsItsLookup) {
    IncFile* root = IncFile::FindIncFile("/", true);
    ASSERT_NE(root, nullptr);
    EXPECT_STREQ(root->Filename(), "/");
}

}  // namespace
