// Text as pairs of pointers over bytes that the reader does not own: the currency of all text
// in the preprocessor, passed by value and never NUL-terminated.

#ifndef PPTEXT_H
#define PPTEXT_H

#include "PPMemMgr.h"

class PP_CTextWriter;

// A cursor over bytes it does not own; freely copied. The bytes need not end in a NUL.
class PP_CTextReader {
public:
    PP_CTextReader() = default;
    PP_CTextReader(char const* text, unsigned long length) : fReadPtr(text), fEndPtr(text + length) {}
    explicit PP_CTextReader(PP_CTextWriter const& writer);

    // Reads are unchecked: callers test IsEOF() first.
    int GetChar() { return static_cast<unsigned char>(*fReadPtr++); }
    int PeekChar() const { return static_cast<unsigned char>(*fReadPtr); }
    void UnGetChar() { --fReadPtr; }
    bool IsEOF() const { return fReadPtr >= fEndPtr; }
    unsigned long Readable() const { return static_cast<unsigned long>(fEndPtr - fReadPtr); }
    char const* GetReadPtr() const { return fReadPtr; }
    char const* GetEndPtr() const { return fEndPtr; }
    // Moves the cursor to `position`, which lies between it and the end.
    void SkipTo(char const* position) { fReadPtr = position; }
    void ReadFrom(char const* text, unsigned long length);
    bool Invariant() const { return fReadPtr <= fEndPtr; }

protected:
    char const* fReadPtr = nullptr;
    char const* fEndPtr = nullptr;
};

// A write cursor over a buffer it does not own. Growth is the business of a PP_CWriterHelper.
class PP_CTextWriter {
public:
    PP_CTextWriter(char* buffer, unsigned long capacity)
        : fStartPtr(buffer), fWritePtr(buffer), fLimitPtr(buffer + capacity) {}

    char* GetStart() const { return fStartPtr; }
    char* GetWritePtr() const { return fWritePtr; }
    unsigned long Readable() const { return static_cast<unsigned long>(fWritePtr - fStartPtr); }
    unsigned long Writeable() const { return static_cast<unsigned long>(fLimitPtr - fWritePtr); }
    unsigned long Capacity() const { return static_cast<unsigned long>(fLimitPtr - fStartPtr); }
    bool IsFull() const { return fWritePtr >= fLimitPtr; }
    void PutChar(char c) { *fWritePtr++ = c; }
    void ReWrite() { fWritePtr = fStartPtr; }
    void WriteTo(char* position);
    void Resized(char* buffer, unsigned long capacity);
    bool Invariant() const { return fStartPtr <= fWritePtr && fWritePtr <= fLimitPtr; }

private:
    char* fStartPtr;
    char* fWritePtr;
    char* fLimitPtr;
};

// Writes into a PP_CTextWriter and grows it by the policy of the subclass. Bounds are settled
// once per bulk operation; the bytes themselves are stored unchecked.
class PP_CWriterHelper {
public:
    PP_CWriterHelper(PP_CMemoryManager* memory, PP_CTextWriter* writer) : fMemory(memory), fWriter(writer) {}
    PP_CWriterHelper(PP_CWriterHelper const&) = delete;
    PP_CWriterHelper& operator=(PP_CWriterHelper const&) = delete;
    virtual ~PP_CWriterHelper() = default;

    // Makes room for at least `size` more bytes.
    virtual void Expand(unsigned long size) = 0;

    void AddChar(int c) {
        if (fWriter->IsFull())
            ExpandAddChar(c);
        else
            fWriter->PutChar(static_cast<char>(c));
    }
    void AddText(PP_CTextReader text);
    void AddString(char const* text);

    PP_CTextWriter* operator->() const { return fWriter; }
    operator PP_CTextWriter*() const { return fWriter; }

protected:
    // Moves the written bytes into a new buffer of the given capacity.
    void MoveTo(char* buffer, unsigned long capacity);

    PP_CMemoryManager* fMemory;
    PP_CTextWriter* fWriter;

private:
    void ExpandAddChar(int c);
};

// Growth in permanent memory by rounded steps of 256 bytes while small, by half again once
// large, for a buffer that lives as long as the preprocessor.
class PP_CWriterPerm : public PP_CWriterHelper {
public:
    using PP_CWriterHelper::PP_CWriterHelper;
    void Expand(unsigned long size) override;
};

// Geometric growth in temp memory. While one lives, temp memory counts as in use.
class PP_CWriterTemp : public PP_CWriterHelper {
public:
    PP_CWriterTemp(PP_CMemoryManager* memory, PP_CTextWriter* writer)
        : PP_CWriterHelper(memory, writer), fUseTempMem(memory) {}
    void Expand(unsigned long size) override;

private:
    PP_CUseTempMem fUseTempMem;
};

#endif
