// General allocation for the objects of the resource language: statements, expressions and the
// bytes of resources. No arena lies behind it; each block is freed on its own. Small objects that
// come and go by the thousand, such as the nodes of the expressions of every field, can instead
// be recycled through per-size free lists.
#pragma once

#include <cstddef>
#include <new>

// A block of at least one byte, even for a size of 0, or null when memory is exhausted.
void* RCAlloc(std::size_t size);

// Gives a block from RCAlloc back; null is ignored.
void RCFree(void* block);

// The free lists behind RCAllocSmall, one for each size class of kGranule bytes up to kLargest.
// Taking a block from a list and giving one back are inline, as they happen for every node of
// every expression of every resource; carving new blocks from a chunk is not.
class RCSmallBlocks {
public:
    static constexpr std::size_t kGranule = 16;
    static constexpr std::size_t kLargest = 512;

    // Under AddressSanitizer every block goes to the heap, so that a use after RCFreeSmall is caught.
#if defined(__SANITIZE_ADDRESS__)
    static constexpr bool kRecycle = false;
#else
    static constexpr bool kRecycle = true;
#endif

    static bool IsSmall(std::size_t size) { return kRecycle && size <= kLargest; }

    static void* Take(std::size_t size) {
        FreeBlock*& head = fgFree[ClassOf(size)];
        if (FreeBlock* block = head) {
            head = block->fNext;
            return block;
        }
        return Carve(ClassOf(size));
    }

    static void Give(void* block, std::size_t size) {
        FreeBlock*& head = fgFree[ClassOf(size)];
        head = new (block) FreeBlock{head};
    }

private:
    struct FreeBlock {
        FreeBlock* fNext;
    };

    static std::size_t ClassOf(std::size_t size) { return size == 0 ? 0 : (size - 1) / kGranule; }
    static void* Carve(std::size_t index);

    static FreeBlock* fgFree[kLargest / kGranule];
};

// A block of size bytes for an object that is given back with RCFreeSmall and the same size.
// Sizes up to 512 bytes come from free lists that keep the blocks given back; larger ones go to
// RCAlloc. Null when memory is exhausted.
inline void* RCAllocSmall(std::size_t size) {
    return RCSmallBlocks::IsSmall(size) ? RCSmallBlocks::Take(size) : RCAlloc(size);
}

// As RCAllocSmall for a block that must be there: exhaustion throws std::bad_alloc.
[[noreturn]] void RCThrowBadAlloc();
inline void* RCAllocSmallOrThrow(std::size_t size) {
    if (void* block = RCAllocSmall(size)) return block;
    RCThrowBadAlloc();
}

// Gives a block from RCAllocSmall back; null is ignored.
inline void RCFreeSmall(void* block, std::size_t size) {
    if (block == nullptr) return;
    if (RCSmallBlocks::IsSmall(size))
        RCSmallBlocks::Give(block, size);
    else
        RCFree(block);
}

// A base for classes whose objects come and go by the thousand with every resource: their blocks
// come from RCAllocSmall, and exhaustion throws std::bad_alloc. A class deleted through a pointer
// to a base needs a virtual destructor, so that the size given back is that of the whole object.
struct RCRecycled {
    static void* operator new(std::size_t size) { return RCAllocSmallOrThrow(size); }
    static void operator delete(void* block, std::size_t size) { RCFreeSmall(block, size); }
};
