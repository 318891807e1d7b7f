// The list of resources of one compilation with an index by type and id, written at the end.

#include "RCResourceFile.h"


#include "Assertion.h"
#include "MsgIds.h"
#include "Options.h"
#include "RCPrivMacResourceFile.h"

namespace {

// Resources mostly come with ids counting up within a type, so four neighbouring ids of a type
// share a run of four neighbouring places: inserting them touches one cache line, or two, instead
// of four anywhere in the table. The runs, one per type and four ids, are mixed over the whole
// table (the finaliser of MurmurHash3). Longer runs would make longer clusters for the probes.
constexpr unsigned kIdsPerRun = 4;

std::size_t IndexHash(unsigned long type, short id) {
    auto const bits = static_cast<uint16_t>(id);
    uint64_t key = (static_cast<uint64_t>(type) << 16) ^ (bits / kIdsPerRun);
    key ^= key >> 33;
    key *= 0xff51afd7ed558ccdULL;
    key ^= key >> 33;
    key *= 0xc4ceb9fe1a85ec53ULL;
    key ^= key >> 33;
    return static_cast<std::size_t>(key * kIdsPerRun + bits % kIdsPerRun);
}

}  // namespace

RCResourceFile::~RCResourceFile() {
    for (RCResource* resource : fResources) delete resource;
}

std::size_t RCResourceFile::SlotOf(unsigned long type, short id, std::size_t hash) const {
    std::size_t const mask = fIndex.size() - 1;
    for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
        Slot const& slot = fIndex[at];
        if (slot.fPosition == 0) return at;
        if (slot.fHash != static_cast<uint32_t>(hash)) continue;
        RCResource const* resource = fResources[slot.fPosition - 1];
        if (resource->GetType() == type && resource->GetId() == id) return at;
    }
}

// The low bits of the hash that place a slot are the ones it keeps, so a slot moves without its
// resource being read.
void RCResourceFile::GrowIndex() {
    std::vector<Slot> old(fIndex.size() * 2);
    old.swap(fIndex);
    std::size_t const mask = fIndex.size() - 1;
    for (Slot const& slot : old) {
        if (slot.fPosition == 0) continue;
        std::size_t at = slot.fHash & mask;
        while (fIndex[at].fPosition != 0) at = (at + 1) & mask;
        fIndex[at] = slot;
    }
}

RCResource* RCResourceFile::Lookup(unsigned long type, short id) const {
    uint32_t const position = fIndex[SlotOf(type, id, IndexHash(type, id))].fPosition;
    return position == 0 ? nullptr : fResources[position - 1];
}

// The index grows before the look for a duplicate, so that one probe serves both the look and the
// insertion; growing for a resource that is then refused changes nothing but the table's size.
int RCResourceFile::AddResource(RCResource* resource) {
    unsigned long const type = resource->GetType();
    short const id = resource->GetId();
    if (2 * (fResources.size() + 1) > fIndex.size()) GrowIndex();
    std::size_t const hash = IndexHash(type, id);
    std::size_t const slot = SlotOf(type, id, hash);
    if (fIndex[slot].fPosition != 0) return kMsg_DuplicateResource;
    fResources.push_back(resource);
    fIndex[slot] = Slot{static_cast<uint32_t>(hash), static_cast<uint32_t>(fResources.size())};
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
    for (RCResource const* resource : fResources)
        if (int result = output.AddResource(resource)) return result;
    return 0;
}
