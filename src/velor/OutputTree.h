// OutputTree: what a compilation left in an output folder, read back without the compiler.
//
// Each resource is one file holding exactly its bytes, at <folder>/vlbk_<type>/<id>.vlbk: <type>
// is the four characters of the resource type cut at the first zero byte, <id> the decimal text
// of the id taken as unsigned 16 bits. Path, type and id are all there is to a resource. Names
// that the compiler never writes (other folders, other files) are passed over, so a damaged or
// foreign tree lists only what can be a resource.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct TreeResource {
    std::uint32_t type;
    std::int16_t id;
    std::uintmax_t size;
    std::filesystem::path path;
};

class OutputTree {
public:
    explicit OutputTree(std::filesystem::path folder) : fFolder(std::move(folder)) {}

    std::filesystem::path const& Folder() const { return fFolder; }
    bool Exists() const;
    // Every resource, by type and then by id.
    std::vector<TreeResource> Resources() const;
    // The resources of one type, by id.
    std::vector<TreeResource> Resources(std::uint32_t type) const;
    std::filesystem::path PathOf(std::uint32_t type, std::int16_t id) const;
    bool Has(std::uint32_t type, std::int16_t id) const;

    // A whole file, or nothing when it cannot be read as a regular file.
    static std::optional<std::string> ReadFile(std::filesystem::path const& path);
    // The type that one to four characters spell, the missing ones zero: the inverse of the
    // reader's ResourceType::Text.
    static std::optional<std::uint32_t> TypeOfText(std::string_view text);

private:
    void AddResourcesOf(std::uint32_t type, std::filesystem::path const& typeFolder,
                        std::vector<TreeResource>& resources) const;

    std::filesystem::path fFolder;
};
