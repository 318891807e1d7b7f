// Allocation for the resource language over the C heap: a request for 0 bytes gets 1.

#include "RCAlloc.h"

#include <cstdlib>

void* RCAlloc(std::size_t size) {
    // Asking for 0 bytes may give null, which callers would take for exhaustion.
    return std::malloc(size == 0 ? 1 : size);
}

void RCFree(void* block) {
    std::free(block);
}
