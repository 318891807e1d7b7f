// Sole-owner pointers. Copying one moves ownership: the source is left null, so a parser can hand
// partial work from one holder to the next and whatever is still held on an early return is freed.
// There are no reference counts.
#pragma once

#include "RCAlloc.h"

template <class T>
class RCPtr {
public:
    RCPtr(T* rep = nullptr) : fRep(rep) {}
    RCPtr(RCPtr& source) : fRep(source.Release()) {}
    RCPtr(RCPtr&& source) : fRep(source.Release()) {}
    ~RCPtr() { delete fRep; }

    RCPtr& operator=(RCPtr& source) { return *this = source.Release(); }
    RCPtr& operator=(RCPtr&& source) { return *this = source.Release(); }

    // Deletes the object held so far, unless it is the one being assigned.
    RCPtr& operator=(T* rep) {
        if (rep != fRep) {
            delete fRep;
            fRep = rep;
        }
        return *this;
    }

    // Gives up ownership without deleting.
    T* Release() {
        T* rep = fRep;
        fRep = nullptr;
        return rep;
    }

    T* GetRep() const { return fRep; }
    operator T*() const { return fRep; }
    T* operator->() const { return fRep; }
    T& operator*() const { return *fRep; }

private:
    T* fRep;
};

// Owns a block from RCAlloc and gives it back with RCFree.
class RCVoidPtr {
public:
    explicit RCVoidPtr(void* block = nullptr) : fBlock(block) {}
    RCVoidPtr(RCVoidPtr const&) = delete;
    RCVoidPtr& operator=(RCVoidPtr const&) = delete;
    ~RCVoidPtr() { RCFree(fBlock); }

    RCVoidPtr& operator=(void* block) {
        if (block != fBlock) {
            RCFree(fBlock);
            fBlock = block;
        }
        return *this;
    }

private:
    void* fBlock;
};
