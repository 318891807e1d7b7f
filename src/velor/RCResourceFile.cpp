// The list of resources of one compilation with an index by type and id, written at the end.

#include "RCResourceFile.h"

#include <functional>

#include "Assertion.h"
#include "MsgIds.h"
#include "Options.h"
#include "RCPrivMacResourceFile.h"

std::size_t RCResourceFile::KeyHash::operator()(Key const& key) const {
    return std::hash<uint64_t>()((key.fType << 16) ^ static_cast<uint16_t>(key.fId));
}

RCResourceFile::~RCResourceFile() { release(fResources); }

RCResource* RCResourceFile::Lookup(unsigned long type, short id) const {
    auto found = fIndex.find(Key{type, id});
    return found == fIndex.end() ? nullptr : found->second;
}

int RCResourceFile::AddResource(RCResource* resource) {
    auto [place, added] = fIndex.try_emplace(Key{resource->GetType(), resource->GetId()}, resource);
    if (!added) return kMsg_DuplicateResource;
    fResources.Append(new RCListItem<RCResource*>(resource));
    return 0;
}

short RCResourceFile::UniqueResId(unsigned long type, short id) const {
    // Stepping through all 65536 ids back to the first means every one of them is taken.
    short const start = id;
    while (Lookup(type, id) != nullptr) {
        id = static_cast<short>(static_cast<uint16_t>(id) + 1);
        VELOR_ASSERT_TEXT("RCResourceFile::UniqueResId: every id is taken", id != start);
    }
    return id;
}

int RCResourceFile::WriteFile(void*) {
    RCPrivMacResourceFile output(static_cast<uint32_t>(gOptions->GetType()),
                                 static_cast<uint32_t>(gOptions->GetCreator()));
    if (int result = output.Open(fName)) return result;
    RCListIterator<RCList<RCListItem<RCResource*>>> resources(fResources);
    while (auto* item = resources.Next())
        if (int result = output.AddResource(item->fValue)) return result;
    return 0;
}
