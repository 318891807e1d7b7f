// Text readers, and the writers that build text in the arena's permanent or temp memory.

#include "PPText.h"

#include <algorithm>
#include <cstring>

#include "Assertion.h"

PP_CTextReader::PP_CTextReader(PP_CTextWriter const& writer)
    : fReadPtr(writer.GetStart()), fEndPtr(writer.GetWritePtr()) {}

void PP_CTextReader::ReadFrom(char const* text, unsigned long length) {
    fReadPtr = text;
    fEndPtr = text + length;
    VELOR_ASSERT(Invariant());
}

void PP_CTextWriter::WriteTo(char* position) {
    fWritePtr = position;
    VELOR_ASSERT(Invariant());
}

void PP_CTextWriter::Resized(char* buffer, unsigned long capacity) {
    unsigned long written = Readable();
    fStartPtr = buffer;
    fWritePtr = buffer + written;
    fLimitPtr = buffer + capacity;
    VELOR_ASSERT(Invariant());
}

void PP_CWriterHelper::ExpandAddChar(int c) {
    Expand(1);
    fWriter->PutChar(static_cast<char>(c));
}

void PP_CWriterHelper::AddText(PP_CTextReader text) {
    Expand(text.Readable());
    while (!text.IsEOF())
        fWriter->PutChar(static_cast<char>(text.GetChar()));
}

void PP_CWriterHelper::AddString(char const* text) {
    if (text == nullptr)
        return;
    AddText(PP_CTextReader(text, std::strlen(text)));
}

void PP_CWriterHelper::MoveTo(char* buffer, unsigned long capacity) {
    if (fWriter->GetStart() == nullptr) {
        *fWriter = PP_CTextWriter(buffer, capacity);
        return;
    }
    std::memcpy(buffer, fWriter->GetStart(), fWriter->Readable());
    fWriter->Resized(buffer, capacity);
}

void PP_CWriterPerm::Expand(unsigned long size) {
    if (fWriter->Writeable() >= size)
        return;
    // The request rounded up to whole steps of 256, but never less than half what the buffer
    // holds: a body of megabytes must not be copied once per 256 bytes it grows.
    unsigned long const capacity = fWriter->Capacity();
    unsigned long newCapacity = capacity + std::max(((size >> 8) + 1) << 8, capacity / 2);
    char* oldBuffer = fWriter->GetStart();
    MoveTo(static_cast<char*>(fMemory->AllocPerm(newCapacity)), newCapacity);
    fMemory->FreePerm(oldBuffer);
}

void PP_CWriterTemp::Expand(unsigned long size) {
    if (fWriter->Writeable() >= size)
        return;
    unsigned long capacity = fWriter->Capacity();
    unsigned long newCapacity = capacity == 0 ? 32 : capacity * 2;
    while (newCapacity < fWriter->Readable() + size)
        newCapacity *= 2;
    // The old buffer stays behind in its temp block until the next bulk release.
    MoveTo(static_cast<char*>(fMemory->AllocTemp(newCapacity)), newCapacity);
}
