// General allocation for the objects of the resource language: statements, expressions and the
// bytes of resources. No arena lies behind it; each block is freed on its own. Small objects that
// come and go by the thousand, such as the nodes of the expressions of every field, can instead
// be recycled through per-size free lists.
#pragma once

#include <cstddef>

// A block of at least one byte, even for a size of 0, or null when memory is exhausted.
void* RCAlloc(std::size_t size);

// Gives a block from RCAlloc back; null is ignored.
void RCFree(void* block);

// A block of size bytes for an object that is given back with RCFreeSmall and the same size.
// Sizes up to 512 bytes come from free lists that keep the blocks given back; larger ones go to
// RCAlloc. Null when memory is exhausted.
void* RCAllocSmall(std::size_t size);

// Gives a block from RCAllocSmall back; null is ignored.
void RCFreeSmall(void* block, std::size_t size);

// A base for classes whose objects come and go by the thousand with every resource: their blocks
// come from RCAllocSmall, and exhaustion throws std::bad_alloc. A class deleted through a pointer
// to a base needs a virtual destructor, so that the size given back is that of the whole object.
struct RCRecycled {
    static void* operator new(std::size_t size);
    static void operator delete(void* block, std::size_t size);
};
