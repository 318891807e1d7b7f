// String values with two zero bytes of room behind the text, so a terminator always fits.

#include "RCByteString.h"

#include "MsgIds.h"
#include "Msgs.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr long kTerminatorBytes = 2;

}  // namespace

bool RCByteString::Expand(long size) {
    void* grown = std::realloc(fData, static_cast<size_t>(fLength + size));
    if (grown == nullptr) {
        Msgs::Display(Msgs::kError, kMsg_OutOfMemory);
        return false;
    }
    fData = grown;
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
    std::free(fData);
    fData = nullptr;
    fLength = 0;
}
