// Directories and files of the include search. A directory is known by the spelling it was given
// and is used by plain concatenation, so a directory name ends in '/' or is empty (the current
// directory). Both kinds of record live in the permanent arena for the rest of the process.
#pragma once

#include "MarkRelease.h"

class IncFile;

class IncDir : public MarkReleaseObject {
public:
    // The one record of a directory spelled this way, made on request; else null.
    static IncDir* FindIncDir(char const* name, bool create);

    char const* DirectoryName() const { return fDirName; }

    // The directory name and the file name joined in buffer, cut to fit size bytes with the NUL.
    virtual char* FullName(char const* name, char* buffer, unsigned long size) const;

    // The file of that name in this directory, or the file a full path names. With create the
    // file need not exist. Every call that finds a file makes a new record and reports it as a
    // progress message.
    virtual IncFile* FindIncFile(char const* name, bool create);

    // As FindIncFile, but always in this directory, even for a name that begins with '/'.
    IncFile* FindInThisDirectory(char const* name, bool create);

private:
    explicit IncDir(char const* name);
    static IncDir* CreateIncDir(char const* name);
    IncFile* NewFile(char const* name);

    char const* fDirName;
    unsigned long fDirNameLength;
};

class IncFile : public MarkReleaseObject {
public:
    // The file a path names, in the directory that the path spells, which is made if need be.
    // Null only when the file does not exist and create is false.
    static IncFile* FindIncFile(char const* path, bool create);

    IncDir* Directory() const { return fDirectory; }
    char const* Filename() const { return fRelativeName; }

    // The path to open, cut to fit size bytes with the NUL.
    char* ValidName(char* buffer, int size) const;

private:
    friend class IncDir;
    IncFile(char const* relativeName, IncDir* directory)
        : fRelativeName(relativeName), fDirectory(directory) {}

    char const* fRelativeName;
    IncDir* fDirectory;
};
