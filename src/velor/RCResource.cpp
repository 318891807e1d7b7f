// One compiled resource: its bytes copied out of the bindings, its name and flags beside them.

#include "RCResource.h"

#include <cstring>

#include "Assertion.h"
#include "MsgIds.h"
#include "Msgs.h"
#include "RCAlloc.h"
#include "RCByteString.h"

namespace {


}  // namespace

RCResource::~RCResource() {
    RCFree(fName);
    RCFree(fContents);
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
    RCFree(fContents);
    fContents = static_cast<char*>(RCAlloc(static_cast<size_t>(length)));
    if (fContents == nullptr) {
        Msgs::Display(Msgs::kFatal, kMsg_OutOfMemory);  // ends the run
        return;
    }
    fContentsLength = length;
    if (length > 0) std::memcpy(fContents, bytes, static_cast<size_t>(length));
}
