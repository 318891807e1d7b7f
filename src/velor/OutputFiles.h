// The file calls of the output, made safe against links, concurrent runs and killed runs.
//
// Nothing here follows a link at the last component of a path it writes: a link planted in the
// output tree makes the write fail instead of redirecting it outside. Replacing a file goes
// through a temporary beside it and a rename, so that a reader sees the old or the new contents
// and never an empty file. The lock makes runs into one folder take turns.
#pragma once

#include <cstddef>
#include <string>

// Creates or empties path and writes bytes to it. Fails on a link at path.
bool WriteFileNoFollow(std::string const& path, char const* bytes, size_t length);

// A folder held open for writing files into it by name, so that a run of files into one folder
// resolves its path once. Opening fails on a link at the folder's own path; so does every write
// then.
class OpenFolder {
public:
    explicit OpenFolder(std::string const& folder);
    ~OpenFolder();
    OpenFolder(OpenFolder const&) = delete;
    OpenFolder& operator=(OpenFolder const&) = delete;

    // As WriteFileNoFollow for name inside the folder.
    bool WriteFile(std::string const& name, char const* bytes, size_t length) const;

private:
    int fDescriptor;
};

// Writes bytes to temporary, then renames it over path. A temporary left behind by a killed run
// is replaced, and on failure none remains.
bool ReplaceFile(std::string const& path, std::string const& temporary, char const* bytes, size_t length);

// An advisory lock on a folder, held from construction to destruction; a second holder waits.
// A folder that cannot be opened is not locked, and nothing else changes.
class FolderLock {
public:
    explicit FolderLock(std::string const& folder);
    ~FolderLock();
    FolderLock(FolderLock const&) = delete;
    FolderLock& operator=(FolderLock const&) = delete;

private:
    int fDescriptor = -1;
};
