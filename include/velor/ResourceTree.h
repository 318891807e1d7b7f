// Reads compiled VELOR resources at run time, without the compiler; header only, C++17.
//
// A compiled tree is the folder of the -o path given to velor. Each resource is one file that
// holds exactly its bytes, at <folder>/vlbk_<type>/<id>.vlbk: <type> is the four characters of the
// resource type, cut at the first zero byte, and <id> is the decimal text of the id taken as
// unsigned 16 bits, so that id -1 is "65535.vlbk". Type, id and path are all there is to a
// resource; names and flags are not kept.
//
// Nothing here throws: every operation that can fail returns a Result, which holds either the
// value or an Error whose message says what was looked for and where.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace velor {

// A four-character resource type; the first character is the high byte of the code.
class ResourceType {
public:
    constexpr explicit ResourceType(std::uint32_t code) noexcept : fCode(code) {}
    // A type spelled as text, as in the description: ResourceType("STR ").
    constexpr ResourceType(char const (&text)[5]) noexcept
        : fCode(std::uint32_t(std::uint8_t(text[0])) << 24 | std::uint32_t(std::uint8_t(text[1])) << 16 |
                std::uint32_t(std::uint8_t(text[2])) << 8 | std::uint32_t(std::uint8_t(text[3]))) {}

    constexpr std::uint32_t Code() const noexcept { return fCode; }
    // The characters up to the first zero byte.
    std::string Text() const {
        std::string text;
        for (int shift = 24; shift >= 0 && ((fCode >> shift) & 0xFF) != 0; shift -= 8)
            text += char((fCode >> shift) & 0xFF);
        return text;
    }
    std::string FolderName() const { return "vlbk_" + Text(); }

    friend constexpr bool operator==(ResourceType a, ResourceType b) noexcept { return a.fCode == b.fCode; }
    friend constexpr bool operator!=(ResourceType a, ResourceType b) noexcept { return a.fCode != b.fCode; }

private:
    std::uint32_t fCode;
};

struct Error {
    std::string message;
};

// A value, or the Error that stood in its way. The value may be used only when the Result
// tests true.
template <class T>
class Result {
public:
    Result(T value) : fValue(std::move(value)) {}
    Result(Error error) : fError(std::move(error)) {}

    explicit operator bool() const noexcept { return fValue.has_value(); }
    T& operator*() noexcept { return *fValue; }
    T const& operator*() const noexcept { return *fValue; }
    T* operator->() noexcept { return &*fValue; }
    T const* operator->() const noexcept { return &*fValue; }
    Error const& error() const noexcept { return fError; }

private:
    std::optional<T> fValue;
    Error fError;
};

// The bytes of one resource: a read-only mapping of its file, or a copy read into memory.
class Bytes {
public:
    Bytes() = default;
    Bytes(Bytes&& other) noexcept { *this = std::move(other); }
    Bytes& operator=(Bytes&& other) noexcept {
        if (this != &other) {
            Unmap();
            fMapping = std::exchange(other.fMapping, nullptr);
            fSize = std::exchange(other.fSize, 0);
            fCopy = std::move(other.fCopy);
        }
        return *this;
    }
    ~Bytes() { Unmap(); }

    static Bytes Mapped(void* mapping, std::size_t size) noexcept {
        Bytes bytes;
        bytes.fMapping = mapping;
        bytes.fSize = size;
        return bytes;
    }
    static Bytes Copied(std::vector<unsigned char> copy) noexcept {
        Bytes bytes;
        bytes.fCopy = std::move(copy);
        return bytes;
    }

    bool IsMapped() const noexcept { return fMapping != nullptr; }
    unsigned char const* data() const noexcept {
        return fMapping != nullptr ? static_cast<unsigned char const*>(fMapping) : fCopy.data();
    }
    std::size_t size() const noexcept { return fMapping != nullptr ? fSize : fCopy.size(); }
    unsigned char const* begin() const noexcept { return data(); }
    unsigned char const* end() const noexcept { return data() + size(); }
    std::string_view Text() const noexcept { return {reinterpret_cast<char const*>(data()), size()}; }

private:
    void Unmap() noexcept {
        if (fMapping != nullptr) ::munmap(fMapping, fSize);
        fMapping = nullptr;
    }

    void* fMapping = nullptr;
    std::size_t fSize = 0;
    std::vector<unsigned char> fCopy;
};

// How Load takes a resource's bytes: mapped leaves the file to the kernel's page cache and
// suits large resources; read copies it whole and keeps nothing open.
enum class Access { kMap, kRead };

struct ResourceEntry {
    ResourceType type;
    std::int16_t id;
    std::filesystem::path path;
};

class ResourceTree {
public:
    // The tree in folder, the folder of velor's -o path. Fails when there is no such folder.
    static Result<ResourceTree> Open(std::filesystem::path folder) noexcept {
        try {
            std::error_code error;
            if (!std::filesystem::is_directory(folder, error))
                return Error{"no compiled resource tree at '" + folder.string() + "': not a folder"};
            return ResourceTree(std::move(folder));
        } catch (std::exception const& exception) {
            return Error{exception.what()};
        }
    }

    std::filesystem::path const& Folder() const noexcept { return fFolder; }

    // Where the resource lives, whether or not it is there.
    std::filesystem::path PathOf(ResourceType type, std::int16_t id) const {
        return fFolder / type.FolderName() / FileNameOf(id);
    }

    // The name of a resource's file in its type's folder: "65535.vlbk" for id -1.
    static std::string FileNameOf(std::int16_t id) { return std::to_string(std::uint16_t(id)) + ".vlbk"; }

    // The bytes of one resource; fails when the tree has no such resource.
    Result<Bytes> Load(ResourceType type, std::int16_t id, Access access = Access::kMap) const noexcept {
        try {
            std::filesystem::path const path = PathOf(type, id);
            int const descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
            if (descriptor < 0) {
                if (errno == ENOENT || errno == ENOTDIR)
                    return Error{"no resource '" + type.Text() + "' " + std::to_string(id) + " in '" +
                                 fFolder.string() + "'"};
                return Failure(path, errno);
            }
            Result<Bytes> bytes = access == Access::kMap ? Map(descriptor, path) : ReadAll(descriptor, path);
            ::close(descriptor);
            return bytes;
        } catch (std::exception const& exception) {
            return Error{exception.what()};
        }
    }

    // The resources of one type, by id from the lowest; none when the type has no folder.
    Result<std::vector<ResourceEntry>> Resources(ResourceType type) const noexcept {
        try {
            std::vector<ResourceEntry> entries;
            std::filesystem::path const typeFolder = fFolder / type.FolderName();
            std::error_code error;
            std::filesystem::directory_iterator walk(typeFolder, error);
            if (error == std::errc::no_such_file_or_directory) return entries;
            for (; !error && walk != std::filesystem::directory_iterator(); walk.increment(error)) {
                std::optional<std::int16_t> const id = IdOfFileName(walk->path().filename().string());
                if (id && walk->is_regular_file(error)) entries.push_back({type, *id, walk->path()});
            }
            if (error) return Error{"could not list '" + typeFolder.string() + "': " + error.message()};
            std::sort(entries.begin(), entries.end(),
                      [](ResourceEntry const& a, ResourceEntry const& b) { return a.id < b.id; });
            return entries;
        } catch (std::exception const& exception) {
            return Error{exception.what()};
        }
    }

    // The id that a file name such as "65535.vlbk" stands for: the decimal text the compiler
    // writes, with no sign and no leading zero; nothing for any other name.
    static std::optional<std::int16_t> IdOfFileName(std::string_view name) noexcept {
        std::string_view const suffix = ".vlbk";
        if (name.size() <= suffix.size() || name.substr(name.size() - suffix.size()) != suffix) return std::nullopt;
        std::string_view const digits = name.substr(0, name.size() - suffix.size());
        if (digits.size() > 5 || (digits.size() > 1 && digits[0] == '0')) return std::nullopt;
        std::uint32_t value = 0;
        for (char const c : digits) {
            if (c < '0' || c > '9') return std::nullopt;
            value = value * 10 + std::uint32_t(c - '0');
        }
        if (value > 0xFFFF) return std::nullopt;
        return std::int16_t(std::uint16_t(value));
    }

private:
    explicit ResourceTree(std::filesystem::path folder) : fFolder(std::move(folder)) {}

    static Error Failure(std::filesystem::path const& path, int number) {
        return Error{"could not read '" + path.string() + "': " + std::strerror(number)};
    }

    static Result<Bytes> Map(int descriptor, std::filesystem::path const& path) {
        struct stat status {};
        if (::fstat(descriptor, &status) != 0) return Failure(path, errno);
        if (!S_ISREG(status.st_mode)) return Failure(path, EISDIR);
        // An empty file cannot be mapped, and has nothing to map.
        if (status.st_size == 0) return Bytes();
        std::size_t const size = std::size_t(status.st_size);
        void* mapping = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
        if (mapping == MAP_FAILED) return Failure(path, errno);
        return Bytes::Mapped(mapping, size);
    }

    static Result<Bytes> ReadAll(int descriptor, std::filesystem::path const& path) {
        std::vector<unsigned char> copy;
        unsigned char block[65536];
        for (;;) {
            ssize_t const count = ::read(descriptor, block, sizeof block);
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) return Failure(path, errno);
            if (count == 0) return Bytes::Copied(std::move(copy));
            copy.insert(copy.end(), block, block + count);
        }
    }

    std::filesystem::path fFolder;
};

}  // namespace velor
