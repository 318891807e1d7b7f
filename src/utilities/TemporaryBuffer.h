// Scratch memory for one text of known bound, freed when the buffer goes out of scope.
#pragma once

#include <cstddef>

// Scratch space for building a text of known bound; running out of memory is fatal.
class TemporaryBuffer {
public:
    explicit TemporaryBuffer(size_t size);
    ~TemporaryBuffer();
    TemporaryBuffer(TemporaryBuffer const&) = delete;
    TemporaryBuffer& operator=(TemporaryBuffer const&) = delete;

    char* GetBuffer() const { return fBuffer; }
    size_t GetSize() const { return fSize; }

private:
    char* fBuffer;
    size_t fSize;
};
