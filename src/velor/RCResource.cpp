// One compiled resource: its bytes copied out of the bindings, its name and flags beside them.

#include "RCResource.h"

#include <cstring>

#include "Assertion.h"
#include "MsgIds.h"
#include "Msgs.h"
#include "RCByteString.h"

RCResource::~RCResource() {
    RCFree(fName);
    RCFreeSmall(fContents, static_cast<size_t>(fContentsLength));
}

void RCResource::SetName(char const* name) {
    RCByteString text;
    text.fData = const_cast<char*>(name);
    text.fLength = static_cast<long>(std::strlen(name));
    SetName(text);
}

void RCResource::SetName(RCByteString const& name) {
    VELOR_ASSERT(name.fLength >= 0);
    auto length = static_cast<size_t>(name.fLength);
    RCFree(fName);
    fName = static_cast<char*>(RCAlloc(length + 1));
    if (fName == nullptr) return;
    if (length > 0) std::memcpy(fName, name.fData, length);
    fName[length] = '\0';
}

void RCResource::AddContents(void const* bytes, long length) {
    VELOR_ASSERT(length >= 0);
    RCFreeSmall(fContents, static_cast<size_t>(fContentsLength));
    fContentsLength = length;
    fContents = static_cast<char*>(RCAllocSmall(static_cast<size_t>(length)));
    if (fContents == nullptr) {
        Msgs::Display(Msgs::kFatal, kMsg_OutOfMemory);  // ends the run
        return;
    }
    if (length > 0) std::memcpy(fContents, bytes, static_cast<size_t>(length));
}
