// The resource file of this platform: an empty -o file and one file per resource.
#pragma once

#include <cstdint>
#include <optional>

#include "MacFile.h"
#include "OutputFiles.h"
#include "PerResourceFiles.h"
#include "RCPrivResourceFile.h"

// The output named with -o: recreated as an empty file, with every resource written as a file of
// its own beside it. Constructing one locks the output's folder, so that runs into one folder take
// turns from the clean-up to the last write, and removes the per-resource files of earlier runs.
class RCPrivMacResourceFile : public RCPrivResourceFile {
public:
    RCPrivMacResourceFile(uint32_t fileType, uint32_t creator);

    int Open(char const* path) override;
    int AddResource(RCResource const* resource) override;

private:
    // Declared first: taken before the clean-up, and given back only after the file is closed.
    std::optional<FolderLock> fLock;
    RsrcMacFile fFile;
    PerResourceFiles fResourceFiles;
};
