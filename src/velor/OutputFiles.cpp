// Output file calls over POSIX descriptors: O_NOFOLLOW on every file the run creates, rename for
// replacement, flock for turn-taking. The descriptors of files never outlive the call that opens
// them; those of folders live as long as the lock or the open folder that holds them.
#include "OutputFiles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

namespace {

constexpr int kWriteFlags = O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t kFileMode = 0666;

bool WriteAll(int descriptor, char const* bytes, size_t length) {
    while (length > 0) {
        ssize_t written = ::write(descriptor, bytes, length);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes += written;
        length -= static_cast<size_t>(written);
    }
    return true;
}

// Writes and closes descriptor; false when it is invalid or a write fails.
bool WriteAndClose(int descriptor, char const* bytes, size_t length) {
    if (descriptor < 0) return false;
    bool written = WriteAll(descriptor, bytes, length);
    return ::close(descriptor) == 0 && written;
}

}  // namespace

bool WriteFileNoFollow(std::string const& path, char const* bytes, size_t length) {
    return WriteAndClose(::open(path.c_str(), kWriteFlags, kFileMode), bytes, length);
}

OpenFolder::OpenFolder(std::string const& folder)
    : fDescriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)) {}

OpenFolder::~OpenFolder() {
    if (fDescriptor >= 0) ::close(fDescriptor);
}

bool OpenFolder::WriteFile(std::string const& name, char const* bytes, size_t length) const {
    if (fDescriptor < 0) return false;
    return WriteAndClose(::openat(fDescriptor, name.c_str(), kWriteFlags, kFileMode), bytes, length);
}

bool ReplaceFile(std::string const& path, std::string const& temporary, char const* bytes, size_t length) {
    ::unlink(temporary.c_str());
    int descriptor = ::open(temporary.c_str(), kWriteFlags | O_EXCL, kFileMode);
    if (descriptor < 0) return false;
    if (WriteAndClose(descriptor, bytes, length) && ::rename(temporary.c_str(), path.c_str()) == 0) return true;
    ::unlink(temporary.c_str());
    return false;
}

FolderLock::FolderLock(std::string const& folder)
    : fDescriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (fDescriptor < 0) return;
    while (::flock(fDescriptor, LOCK_EX) != 0 && errno == EINTR) {
    }
}

FolderLock::~FolderLock() {
    if (fDescriptor >= 0) ::close(fDescriptor);
}
