// The platform's file calls that the output logic uses, with their result codes.
#pragma once

#include <cstdint>
#include <string>

// Result codes of the platform's file calls that the output logic looks at.
constexpr int kIOErr = -36;  // I/O error; also a path too long for a Pascal string
constexpr int kFileNotFoundErr = -43;
constexpr int kFileNotOpenErr = -38;
constexpr int kEndOfFileErr = -39;
constexpr int kPositionErr = -40;
constexpr int kParamErr = -50;

// Where SetDataMark counts an offset from.
enum : short { kFromStart = 1, kFromEnd = 2, kFromMark = 3 };

// A file named by a path, with the catalogue attributes it is created with. On Linux the
// platform's opaque file reference is the path of the object once it has been found or made.
class MacFile {
public:
    MacFile() = default;
    MacFile(MacFile const&) = delete;
    MacFile& operator=(MacFile const&) = delete;
    virtual ~MacFile() = default;

    void IMacFile(uint32_t fileType, uint32_t creator);

    // Takes the path for this object and clears the way for a new file: whatever stands at the
    // path is deleted. Answers kFileNotFoundErr for every path it accepts, since the file must now
    // be created, and kIOErr for a path that has no room in a Pascal string.
    int Specify(char const* path);

protected:
    std::string fRef;
    std::string fPath;
    // A Linux file keeps no type or creator; they are held for the catalogue record only.
    uint32_t fFileType = 0x54455854;  // 'TEXT'
    uint32_t fCreator = 0x3F3F3F3F;   // '????'
};

// A MacFile with one fork that is opened and closed as a unit.
class ForkMacFile : public MacFile {
public:
    explicit ForkMacFile(bool keepOpen) : fKeepOpen(keepOpen) {}

    void SetPermission(signed char permission) { fPermission = permission; }
    int OpenFile(bool force);
    int CloseFile(bool force);
    bool IsOpen() const { return fRefNum != -1; }

    // Creates the empty file in its folder. A missing folder is reported on the standard error
    // (outside the message channel, so it counts as no error) and answers kFileNotFoundErr.
    virtual int CreateFile();

    // The bytes of the open fork, at its mark. Each answers kFileNotOpenErr on a closed file.
    // A read that meets the end moves what there was, sets count to it and answers
    // kEndOfFileErr; a mark beyond the end answers kPositionErr and stays where it was.
    int GetDataLength(unsigned long& length);
    int SetDataLength(unsigned long length);
    int GetDataMark(unsigned long& mark);
    int SetDataMark(unsigned long offset, short mode);
    int ReadData(void* bytes, unsigned long& count);
    int WriteData(void const* bytes, unsigned long& count);

protected:
    virtual int OpenFork() = 0;
    virtual int CloseFork() = 0;

    int32_t fRefNum = -1;
    signed char fPermission = 1;
    bool fKeepOpen;
};

// The resource fork of a file. Without forks on this platform the fork is the file itself, which
// stays empty: resources are written one file each beside it.
class RsrcMacFile : public ForkMacFile {
public:
    explicit RsrcMacFile(bool keepOpen) : ForkMacFile(keepOpen) {}
    ~RsrcMacFile() override;

protected:
    int OpenFork() override;
    int CloseFork() override;
};
