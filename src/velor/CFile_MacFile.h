// CFile_MacFile: the stream interface over the open fork of a ForkMacFile, so that a tool can read
// and write a file through the same AFile as it would a data area or a buffer.
#pragma once

#include "MacFile.h"
#include "Streams.h"

class CFile_MacFile : public AFile {
public:
    // The file must be open for the operations to succeed; a closed one answers kFileNotOpenErr.
    explicit CFile_MacFile(ForkMacFile& file) : fFile(file) {}

    using ARead::Read;
    using AWrite::Write;
    int Read(void* bytes, unsigned long count, unsigned long* actual) override;
    int Write(void const* bytes, unsigned long count, unsigned long* actual) override;
    int SetCursor(unsigned long offset) override { return fFile.SetDataMark(offset, kFromStart); }
    int GetCursor(unsigned long* offset) const override { return fFile.GetDataMark(*offset); }
    int GetSize(unsigned long* size) const override { return fFile.GetDataLength(*size); }

private:
    ForkMacFile& fFile;
};
