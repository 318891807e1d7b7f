// The file calls of the output over the standard library, answering the platform's result codes.

#include "MacFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

// The longest path a Pascal string holds.
constexpr size_t kMaxPathLength = 255;

bool Exists(std::string const& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

int ResultOfErrno() { return errno == ENOENT ? kFileNotFoundErr : kIOErr; }

// Moves count bytes by repeated calls of transfer(done, left), which answers what one system call
// moved; an interrupted call is made again. On return count holds the bytes moved; a call that
// moved nothing ends the transfer with stalledResult.
template <class Transfer>
int TransferAll(unsigned long& count, int stalledResult, Transfer transfer) {
    unsigned long done = 0;
    int result = 0;
    while (done < count && result == 0) {
        ssize_t moved = transfer(done, count - done);
        if (moved < 0 && errno == EINTR) continue;
        if (moved < 0)
            result = kIOErr;
        else if (moved == 0)
            result = stalledResult;
        else
            done += static_cast<unsigned long>(moved);
    }
    count = done;
    return result;
}

}  // namespace

void MacFile::IMacFile(uint32_t fileType, uint32_t creator) {
    fFileType = fileType;
    fCreator = creator;
}

int MacFile::Specify(char const* path) {
    size_t length = std::strlen(path);
    if (length > kMaxPathLength) return kIOErr;
    fPath.assign(path, length);
    if (Exists(fPath)) {
        fRef = fPath;
        std::error_code ignored;
        fs::remove(fRef, ignored);
    }
    return kFileNotFoundErr;
}

int ForkMacFile::OpenFile(bool force) {
    if (!fKeepOpen && !force) return 0;
    if (IsOpen()) return 0;
    int result = OpenFork();
    if (result != 0) fRefNum = -1;
    return result;
}

int ForkMacFile::CloseFile(bool force) {
    if (fKeepOpen && !force) return 0;
    if (!IsOpen()) return 0;
    int result = CloseFork();
    fRefNum = -1;
    return result;
}

int ForkMacFile::CreateFile() {
    // The first byte is never taken as the separator, so "/file" counts as a bare name.
    size_t slash = fPath.rfind('/');
    bool hasFolder = slash != std::string::npos && slash != 0;
    std::string folder = hasFolder ? fPath.substr(0, slash) : fPath;
    std::string name = hasFolder ? fPath.substr(slash + 1) : fPath;
    if (!Exists(folder)) {
        std::fprintf(stderr, "CFURLGetFSRef failed - maybe the output directory doesn't exist? (%s)\n",
                     folder.c_str());
        return kFileNotFoundErr;
    }
    // A creation that fails still answers success: the fork cannot be opened afterwards, and
    // that is where the failure shows.
    std::string file = folder + "/" + name;
    int descriptor = ::open(file.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    if (descriptor != -1) {
        ::close(descriptor);
        fRef = file;
    }
    return 0;
}

int ForkMacFile::GetDataLength(unsigned long& length) {
    if (!IsOpen()) return kFileNotOpenErr;
    struct stat status {};
    if (::fstat(fRefNum, &status) != 0) return ResultOfErrno();
    length = static_cast<unsigned long>(status.st_size);
    return 0;
}

int ForkMacFile::SetDataLength(unsigned long length) {
    if (!IsOpen()) return kFileNotOpenErr;
    return ::ftruncate(fRefNum, static_cast<off_t>(length)) == 0 ? 0 : ResultOfErrno();
}

int ForkMacFile::GetDataMark(unsigned long& mark) {
    if (!IsOpen()) return kFileNotOpenErr;
    off_t position = ::lseek(fRefNum, 0, SEEK_CUR);
    if (position < 0) return ResultOfErrno();
    mark = static_cast<unsigned long>(position);
    return 0;
}

int ForkMacFile::SetDataMark(unsigned long offset, short mode) {
    unsigned long length = 0, mark = 0;
    if (int result = GetDataLength(length)) return result;
    if (int result = GetDataMark(mark)) return result;
    unsigned long base;
    switch (mode) {
        case kFromStart: base = 0; break;
        case kFromEnd: base = length; break;
        case kFromMark: base = mark; break;
        default: return kParamErr;
    }
    if (offset > length - base) return kPositionErr;
    return ::lseek(fRefNum, static_cast<off_t>(base + offset), SEEK_SET) < 0 ? ResultOfErrno() : 0;
}

int ForkMacFile::ReadData(void* bytes, unsigned long& count) {
    if (!IsOpen()) return kFileNotOpenErr;
    return TransferAll(count, kEndOfFileErr, [&](unsigned long done, unsigned long left) {
        return ::read(fRefNum, static_cast<char*>(bytes) + done, left);
    });
}

int ForkMacFile::WriteData(void const* bytes, unsigned long& count) {
    if (!IsOpen()) return kFileNotOpenErr;
    return TransferAll(count, kIOErr, [&](unsigned long done, unsigned long left) {
        return ::write(fRefNum, static_cast<char const*>(bytes) + done, left);
    });
}

RsrcMacFile::~RsrcMacFile() { CloseFile(true); }

int RsrcMacFile::OpenFork() {
    int access;
    switch (fPermission & 7) {
        case 1: access = O_RDONLY; break;
        case 2: access = O_WRONLY; break;
        default: access = O_RDWR; break;
    }
    // The file was made a moment ago; a link standing there now was planted since, and is refused.
    fRefNum = ::open(fRef.c_str(), access | O_NOFOLLOW | O_CLOEXEC);
    return fRefNum == -1 ? ResultOfErrno() : 0;
}

int RsrcMacFile::CloseFork() { return ::close(fRefNum) == 0 ? 0 : ResultOfErrno(); }
