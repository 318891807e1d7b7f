#include "Options.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::vector<std::string> Directories(Options const& options) {
    std::vector<std::string> directories;
    for (long i = 0; i < options.DirectoryCount(); ++i) directories.push_back(options.GetDirectory(i));
    return directories;
}

using Texts = std::vector<std::string>;

TEST(Options, DirectoriesEndInASeparator) {
    Options options;
    char const* withSeparator = "/kept/";
    options.AddDirectory("/usr/include");
    options.AddDirectory(withSeparator);
    options.AddDirectory("");
    options.AddDirectory(nullptr);
    EXPECT_EQ((Texts{"/usr/include/", "/kept/"}), Directories(options));
    EXPECT_EQ(withSeparator, options.GetDirectory(1));
}

TEST(Options, DirectoryListsSplitAtSemicolons) {
    Options options;
    options.AddDirectories("a;;b/;");
    options.AddDirectories("");
    EXPECT_EQ((Texts{"a/", "b/"}), Directories(options));
}

class DirectoryTree : public testing::Test {
protected:
    void SetUp() override {
        fRoot = fs::temp_directory_path() / ("velor-options-" + std::to_string(getpid()));
        fs::create_directories(fRoot / "top" / "mid" / "low");
        std::ofstream(fRoot / "top" / "file.h") << "not a directory";
    }
    void TearDown() override { fs::remove_all(fRoot); }

    std::string Path(char const* relative) const { return (fRoot / relative).string(); }

    fs::path fRoot;
};

TEST_F(DirectoryTree, StarAddsSubdirectoriesInPreOrderBeforeTheDirectory) {
    Options options;
    options.AddDirectory((Path("top") + "*").c_str());
    EXPECT_EQ((Texts{Path("top/"), Path("top/mid/"), Path("top/mid/low/"), Path("top")}), Directories(options));
}

TEST_F(DirectoryTree, AllTrailingStarsAreStripped) {
    Options options;
    options.AddDirectory((Path("top/mid/") + "***").c_str());
    EXPECT_EQ((Texts{Path("top/mid/"), Path("top/mid/low/"), Path("top/mid/")}), Directories(options));
}

}  // namespace
