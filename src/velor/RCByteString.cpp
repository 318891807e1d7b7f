// String values with two zero bytes of room behind the text, so a terminator always fits.

#include "RCByteString.h"

#include "MsgIds.h"
#include "Msgs.h"
#include "RCAlloc.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr long kTerminatorBytes = 2;

std::size_t roundToGranule(std::size_t size) {
    std::size_t const granule = RCSmallBlocks::kGranule;
    return (size + granule - 1) / granule * granule;
}

}  // namespace

// Small storage is rounded up to the size class it comes from, so that a few more bytes need no
// new block; storage beyond the small blocks grows in place where the heap can.
bool RCByteString::Expand(long size) {
    auto const needed = static_cast<std::size_t>(fLength + size);
    auto const capacity = static_cast<std::size_t>(fCapacity);
    if (needed <= capacity) return true;
    bool const wasLarge = fData != nullptr && !RCSmallBlocks::IsSmall(capacity);
    std::size_t const granted = RCSmallBlocks::IsSmall(needed) ? roundToGranule(needed) : needed;
    void* grown = wasLarge ? std::realloc(fData, granted) : RCAllocSmall(granted);
    if (grown == nullptr) {
        Msgs::Display(Msgs::kError, kMsg_OutOfMemory);
        return false;
    }
    if (!wasLarge && fData != nullptr) {
        std::memcpy(grown, fData, capacity);
        RCFreeSmall(fData, capacity);
    }
    fData = grown;
    fCapacity = static_cast<long>(granted);
    return true;
}

RCByteString RCByteString::Clone() const {
    RCByteString copy;
    copy.fStringType = fStringType;
    if (fData == nullptr) return copy;
    if (!copy.Expand(fLength + kTerminatorBytes)) return copy;
    std::memcpy(copy.fData, fData, static_cast<size_t>(fLength));
    std::memset(copy.Bytes() + fLength, 0, kTerminatorBytes);
    copy.fLength = fLength;
    return copy;
}

void RCByteString::Destroy() {
    RCFreeSmall(fData, static_cast<std::size_t>(fCapacity));
    fData = nullptr;
    fLength = 0;
    fCapacity = 0;
}
