// Path splitting and joining for the include search, on '/' separated names.

#include "PathName.h"

#include <cstring>

bool PathName::IsSeparator(void const* byte) {
    return *static_cast<char const*>(byte) == '/';
}

bool PathName::IsFullPath(char const* path) {
    return path != nullptr && IsSeparator(path);
}

char const* PathName::LastComponent(char const* path) {
    if (path == nullptr || *path == '\0') return path;
    char const* end = path + std::strlen(path);
    if (IsSeparator(end - 1)) --end;
    for (char const* p = end; p != path; --p)
        if (IsSeparator(p - 1)) return p;
    return path;
}

char* PathName::LastComponent(char* path) {
    return const_cast<char*>(LastComponent(static_cast<char const*>(path)));
}
