// The -o output: an empty file, with the resources written one file each beside it.

#include "RCPrivMacResourceFile.h"

#include "PerResourceFiles.h"

RCPrivMacResourceFile::RCPrivMacResourceFile(uint32_t fileType, uint32_t creator) : fFile(false) {
    fFile.IMacFile(fileType, creator);
    if (auto folder = OutputFolder()) {
        fLock.emplace(*folder);
        RemoveOldResourceFiles(*folder);
    }
}

int RCPrivMacResourceFile::Open(char const* path) {
    fFile.SetPermission(3);
    int result = fFile.Specify(path);
    if (result == kFileNotFoundErr) result = fFile.CreateFile();
    if (result != 0) return result;
    // A plain file is ready for use as soon as it exists: unlike a fork it needs no second
    // creation before it opens.
    return fFile.OpenFile(true);
}

int RCPrivMacResourceFile::AddResource(RCResource const* resource) {
    return fResourceFiles.CreateResourceFile(resource);
}
