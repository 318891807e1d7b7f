// A scratch block of a size known in advance; failing to get one ends the run.

#include "TemporaryBuffer.h"

#include <cstdlib>

#include "Msgs.h"
#include "Platform.h"

TemporaryBuffer::TemporaryBuffer(size_t size)
    : fBuffer(static_cast<char*>(std::malloc(size == 0 ? 1 : size))), fSize(size) {
    if (fBuffer == nullptr) Msgs::Display(Msgs::kFatal, static_cast<int>(kMemFullErr));
}

TemporaryBuffer::~TemporaryBuffer() { std::free(fBuffer); }
