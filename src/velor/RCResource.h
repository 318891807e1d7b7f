// One compiled resource of the output.
#pragma once

#include <cstdint>

#include "RCAlloc.h"

struct RCByteString;

// One compiled resource: its bytes, addressed by a four-character type and a signed 16-bit id.
// The name and flags travel with it but reach no output. There is one for every resource of the
// input, and most hold a few dozen bytes, so the object and its bytes come from the small-block
// free lists.
class RCResource : public RCRecycled {
public:
    RCResource(unsigned long type, short id) : fType(type), fId(id) {}
    RCResource(RCResource const&) = delete;
    RCResource& operator=(RCResource const&) = delete;
    ~RCResource();

    void SetName(char const* name);
    // The name may hold any bytes; a zero is added behind them. Without memory the name stays
    // unset.
    void SetName(RCByteString const& name);
    void SetFlags(unsigned long flags) { fFlags = flags; }
    // Copies the bytes. An empty resource still owns a block, so its contents are never null.
    void AddContents(void const* bytes, long length);

    unsigned long GetType() const { return fType; }
    short GetId() const { return fId; }
    char const* GetContents() const { return fContents; }
    long GetContentsLength() const { return fContentsLength; }

private:
    char* fContents = nullptr;
    int64_t fContentsLength = 0;
    char* fName = nullptr;
    uint64_t fType;
    uint64_t fFlags = 0;
    int16_t fId;
};
