// General allocation for the objects of the resource language: statements, expressions and the
// bytes of resources. No arena lies behind it; each block is freed on its own.
#pragma once

#include <cstddef>

// A block of at least one byte, even for a size of 0, or null when memory is exhausted.
void* RCAlloc(std::size_t size);

// Gives a block from RCAlloc back; null is ignored.
void RCFree(void* block);
