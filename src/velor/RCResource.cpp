#include "RCResource.h"

#include <cstring>

#include "Assertion.h"
#include "Msgs.h"
#include "RCAlloc.h"

namespace {

constexpr int kOutOfMemoryMessage = 32695;

}  // namespace

RCResource::~RCResource() {
    RCFree(fName);
    RCFree(fContents);
}

void RCResource::SetName(char const* name) { SetName(name, static_cast<long>(std::strlen(name))); }

void RCResource::SetName(char const* bytes, long length) {
    VELOR_ASSERT(length >= 0);
    RCFree(fName);
    fName = static_cast<char*>(RCAlloc(static_cast<size_t>(length) + 1));
    if (fName == nullptr) return;
    std::memcpy(fName, bytes, static_cast<size_t>(length));
    fName[length] = '\0';
}

void RCResource::AddContents(void const* bytes, long length) {
    VELOR_ASSERT(length >= 0);
    RCFree(fContents);
    fContents = static_cast<char*>(RCAlloc(static_cast<size_t>(length)));
    if (fContents == nullptr) {
        Msgs::Display(Msgs::kFatal, kOutOfMemoryMessage);  // ends the run
        return;
    }
    fContentsLength = length;
    if (length > 0) std::memcpy(fContents, bytes, static_cast<size_t>(length));
}
