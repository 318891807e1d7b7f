#include "PathName.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(PathName, LastComponentKeepsOneTrailingSeparator) {
    char const* const cases[][2] = {{"dir/sub/file.h", "file.h"}, {"/file.h", "file.h"},
                                    {"a/b/", "b/"}, {"a", "a"}, {"/", "/"}, {"", ""}};
    for (auto [path, last] : cases)
        EXPECT_EQ(std::string(PathName::LastComponent(path)), last) << path;
    EXPECT_FALSE(PathName::IsFullPath(nullptr));
}

}  // namespace
