// The list of resources of one compilation with an index by type and id, written at the end.

#include "RCResourceFile.h"


#include "Assertion.h"
#include "MsgIds.h"
#include "Options.h"
#include "RCPrivMacResourceFile.h"

namespace {

// Type and id mixed so that neighbouring ids of one type and equal ids of several types spread
// over the whole table (the finaliser of MurmurHash3).
std::size_t IndexHash(unsigned long type, short id) {
    uint64_t key = (static_cast<uint64_t>(type) << 16) ^ static_cast<uint16_t>(id);
    key ^= key >> 33;
    key *= 0xff51afd7ed558ccdULL;
    key ^= key >> 33;
    key *= 0xc4ceb9fe1a85ec53ULL;
    key ^= key >> 33;
    return static_cast<std::size_t>(key);
}

}  // namespace

RCResourceFile::~RCResourceFile() { release(fResources); }

std::size_t RCResourceFile::SlotOf(unsigned long type, short id) const {
    std::size_t const hash = IndexHash(type, id);
    std::size_t const mask = fIndex.size() - 1;
    for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
        Slot const& slot = fIndex[at];
        if (slot.fResource == nullptr) return at;
        if (slot.fHash == static_cast<uint32_t>(hash) && slot.fResource->GetType() == type &&
            slot.fResource->GetId() == id)
            return at;
    }
}

// The low bits of the hash that place a slot are the ones it keeps, so a slot moves without its
// resource being read.
void RCResourceFile::GrowIndex() {
    std::vector<Slot> old(fIndex.size() * 2);
    old.swap(fIndex);
    std::size_t const mask = fIndex.size() - 1;
    for (Slot const& slot : old) {
        if (slot.fResource == nullptr) continue;
        std::size_t at = slot.fHash & mask;
        while (fIndex[at].fResource != nullptr) at = (at + 1) & mask;
        fIndex[at] = slot;
    }
}

RCResource* RCResourceFile::Lookup(unsigned long type, short id) const { return fIndex[SlotOf(type, id)].fResource; }

int RCResourceFile::AddResource(RCResource* resource) {
    unsigned long const type = resource->GetType();
    short const id = resource->GetId();
    if (Lookup(type, id) != nullptr) return kMsg_DuplicateResource;
    if (4 * (fIndexed + 1) > 3 * fIndex.size()) GrowIndex();
    fIndex[SlotOf(type, id)] = Slot{resource, static_cast<uint32_t>(IndexHash(type, id))};
    ++fIndexed;
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
