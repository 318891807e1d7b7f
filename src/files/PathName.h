// The path functions of the include search. Paths use '/' as the separator.
#pragma once

class PathName {
public:
    static bool IsSeparator(void const* byte);
    // Not null and beginning with a separator.
    static bool IsFullPath(char const* path);
    // The last component of a path. One trailing separator belongs to the component, so that of
    // "a/b/" is "b/"; a path without an earlier separator, "/" among them, is its own last
    // component; a null or empty text gives itself.
    static char const* LastComponent(char const* path);
    static char* LastComponent(char* path);
};
