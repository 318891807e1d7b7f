#include "PathName.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Last(char const* path) {
    return PathName::LastComponent(path);
}

TEST(PathName, LastComponentKeepsOneTrailingSeparator) {
    EXPECT_EQ(Last("dir/sub/file.h"), "file.h");
    EXPECT_EQ(Last("/file.h"), "file.h");
    EXPECT_EQ(Last("a/b/"), "b/");
    EXPECT_EQ(Last("a"), "a");
    EXPECT_EQ(Last("/"), "/");
    EXPECT_EQ(Last(""), "");
    EXPECT_EQ(PathName::LastComponent(static_cast<char const*>(nullptr)), nullptr);
}

TEST(PathName, OnlyALeadingSeparatorMakesAFullPath) {
    EXPECT_TRUE(PathName::IsFullPath("/a"));
    EXPECT_FALSE(PathName::IsFullPath("a/b"));
    EXPECT_FALSE(PathName::IsFullPath(""));
    EXPECT_FALSE(PathName::IsFullPath(nullptr));
}

}  // namespace
