// The resources of one compilation, collected until the end of the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "MsgIds.h"
#include "RCResource.h"

// The resources of one compilation, held until the end of the file so that a file with an error
// writes nothing. The list keeps the order of insertion, which is the order of writing; an index
// beside it keeps every look-up constant in time.
class RCResourceFile {
public:
    // The name is the -o path, kept and not copied: the empty output file made by WriteFile.
    explicit RCResourceFile(char const* name) : fName(name) {}
    RCResourceFile(RCResourceFile const&) = delete;
    RCResourceFile& operator=(RCResourceFile const&) = delete;
    ~RCResourceFile();

    RCResource* Lookup(unsigned long type, short id) const;
    // Takes ownership and answers 0; answers kMsg_DuplicateResource, the warning its caller shows,
    // and leaves the resource to the caller when its type and id are taken, so that the first
    // resource of an id is the one kept.
    int AddResource(RCResource* resource);
    // The first id from id upwards, wrapping from 32767 to -32768, that type has not taken.
    short UniqueResId(unsigned long type, short id) const;
    // Cleans the old output, recreates the -o file and writes every resource in list order.
    // Answers the first failure's result code, or 0. The argument is unused.
    int WriteFile(void* unused);

private:
    // One place of the index: a part of the key's hash, so that probing and growing seldom read
    // a resource itself, and the resource's position in the list counted from 1; 0 is empty.
    struct Slot {
        uint32_t fHash;
        uint32_t fPosition;
    };

    // The place of the index that holds the resource of type and id, or the empty place where it
    // would go. The caller gives the hash of type and id, which an insertion stores as well.
    std::size_t SlotOf(unsigned long type, short id, std::size_t hash) const;
    void GrowIndex();

    char const* fName;
    // The resources in order of insertion, owned.
    std::vector<RCResource*> fResources;
    // An open-addressed table of the resources by type and id, probed linearly and never more
    // than half full, since neighbouring ids take neighbouring places: a look-up reads a short
    // run of adjacent places, whatever the count, and the table costs a few bytes per resource.
    std::vector<Slot> fIndex = std::vector<Slot>(64);
};
