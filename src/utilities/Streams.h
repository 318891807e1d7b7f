// Abstract byte streams and their adapters over memory and data areas.
//
// A stream reads (ARead), writes (AWrite) and may seek (MSeekable); AFile does all three. The
// interfaces join through virtual bases, so an adapter that is both a reader and a file has one
// cursor. Every operation answers a result code, 0 for success; a short transfer says how many
// bytes moved through the optional count. Tools that want a stream over something use these;
// the compile path does not.
#pragma once

#include "DataArea.h"

constexpr int kStreamEndOfData = -39;
constexpr int kStreamOutOfMemory = -108;

class ARead {
public:
    virtual ~ARead() = default;
    // One byte through Read, or -1 when Read failed.
    virtual int GetChar();
    virtual int Read(void* bytes, unsigned long count, unsigned long* actual) = 0;
    int Read(void* bytes, unsigned long count) { return Read(bytes, count, nullptr); }
};

class AWrite {
public:
    virtual ~AWrite() = default;
    // The byte written through Write, or -1 when Write failed.
    virtual int PutChar(int c);
    virtual int Write(void const* bytes, unsigned long count, unsigned long* actual) = 0;
    int Write(void const* bytes, unsigned long count) { return Write(bytes, count, nullptr); }
};

class MSeekable {
public:
    virtual ~MSeekable() = default;
    virtual int SetCursor(unsigned long offset) = 0;
    virtual int GetCursor(unsigned long* offset) const = 0;
    virtual int GetSize(unsigned long* size) const = 0;
};

class ASeekRead : public virtual ARead, public virtual MSeekable {};
class ASeekWrite : public virtual AWrite, public virtual MSeekable {};
class AFile : public virtual ASeekRead, public virtual ASeekWrite {};

// A view of a stretch of memory it does not own, with a cursor that never passes its end.
class SBuffer {
public:
    SBuffer(void* buffer, unsigned long size)
        : fCursor(static_cast<char*>(buffer)), fBuffer(fCursor), fBufferLimit(fBuffer + size) {}

    char* GetData() const { return fCursor; }
    unsigned long GetCursor() const { return static_cast<unsigned long>(fCursor - fBuffer); }
    unsigned long GetSize() const { return static_cast<unsigned long>(fBufferLimit - fBuffer); }
    void SetCursor(unsigned long offset);
    // Moves the cursor n bytes on, or to the end if fewer are left; then n is the bytes passed
    // and the result kStreamEndOfData.
    int AdvanceCursor(unsigned long& n);

protected:
    unsigned long BytesLeft() const { return static_cast<unsigned long>(fBufferLimit - fCursor); }

    char* fCursor;
    char* fBuffer;
    char* fBufferLimit;
};

class RSBuffer : public SBuffer {
public:
    RSBuffer(void const* buffer, unsigned long size) : SBuffer(const_cast<void*>(buffer), size) {}

    // The next byte, or -1 at the end of the buffer.
    int GetChar();
    // Copies as many of the count bytes as are left; kStreamEndOfData when that was fewer.
    int Read(void* bytes, unsigned long count, unsigned long* actual);
};

class RWSBuffer : public RSBuffer {
public:
    RWSBuffer(void* buffer, unsigned long size) : RSBuffer(buffer, size) {}

    // The byte stored, or -1 at the end of the buffer.
    int PutChar(int c);
    int Write(void const* bytes, unsigned long count, unsigned long* actual);
};

// The seeking operations forwarded to an object that has the same three and cannot fail.
template <class Target>
class SeekableOver : public virtual MSeekable {
public:
    explicit SeekableOver(Target& target) : fTarget(target) {}

    int SetCursor(unsigned long offset) override {
        fTarget.SetCursor(offset);
        return 0;
    }
    int GetCursor(unsigned long* offset) const override {
        *offset = fTarget.GetCursor();
        return 0;
    }
    int GetSize(unsigned long* size) const override {
        *size = fTarget.GetSize();
        return 0;
    }

private:
    Target& fTarget;
};

// A file over a data area: reads stop at the end of its data, writes grow it.
class CFile_DataArea : public AFile, public SeekableOver<DataArea> {
public:
    explicit CFile_DataArea(DataArea& area) : SeekableOver(area), fArea(area) {}

    using ARead::Read;
    using AWrite::Write;
    int GetChar() override { return fArea.GetChar(); }
    int PutChar(int c) override { return fArea.PutChar(c); }
    // Always 0; the count tells a short read.
    int Read(void* bytes, unsigned long count, unsigned long* actual) override;
    // kStreamOutOfMemory when the area could not take every byte.
    int Write(void const* bytes, unsigned long count, unsigned long* actual) override;

private:
    DataArea& fArea;
};

class CFile_RSBuffer : public virtual ASeekRead, public SeekableOver<SBuffer> {
public:
    explicit CFile_RSBuffer(RSBuffer& buffer) : SeekableOver(buffer), fBuffer(buffer) {}

    using ARead::Read;
    int GetChar() override { return fBuffer.GetChar(); }
    int Read(void* bytes, unsigned long count, unsigned long* actual) override {
        return fBuffer.Read(bytes, count, actual);
    }

private:
    RSBuffer& fBuffer;
};

class CFile_RWSBuffer : public CFile_RSBuffer, public AFile {
public:
    explicit CFile_RWSBuffer(RWSBuffer& buffer) : CFile_RSBuffer(buffer), fBuffer(buffer) {}

    using AWrite::Write;
    int PutChar(int c) override { return fBuffer.PutChar(c); }
    int Write(void const* bytes, unsigned long count, unsigned long* actual) override {
        return fBuffer.Write(bytes, count, actual);
    }

private:
    RWSBuffer& fBuffer;
};
