// The interface between the collected resources and their way to the disk.
#pragma once

class RCResource;

// Where the resources of one compilation go once it has ended without error.
class RCPrivResourceFile {
public:
    RCPrivResourceFile() = default;
    RCPrivResourceFile(RCPrivResourceFile const&) = delete;
    RCPrivResourceFile& operator=(RCPrivResourceFile const&) = delete;
    virtual ~RCPrivResourceFile() = default;

    // Both answer a result code, 0 for success.
    virtual int Open(char const* path) = 0;
    virtual int AddResource(RCResource const* resource) = 0;
};
