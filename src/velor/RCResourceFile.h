// The resources of one compilation, collected until the end of the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "MsgIds.h"
#include "RCResource.h"
#include "RCScope.h"

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
    struct Key {
        uint64_t fType;
        int16_t fId;
        bool operator==(Key const&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(Key const& key) const;
    };

    char const* fName;
    RCList<RCListItem<RCResource*>> fResources;
    std::unordered_map<Key, RCResource*, KeyHash> fIndex;
};
