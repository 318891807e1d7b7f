// Listing and reading an output folder. Every file-system call takes an error code, so that a
// folder that vanishes or cannot be read shortens the listing rather than ending the process.
#include "OutputTree.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

#include "velor/ResourceTree.h"

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kTypeFolderPrefix = "vlbk_";
constexpr std::size_t kTypeLength = 4;

std::string TypeFolderName(std::uint32_t type) { return velor::ResourceType(type).FolderName(); }

bool ByTypeAndId(TreeResource const& a, TreeResource const& b) {
    return a.type != b.type ? a.type < b.type : a.id < b.id;
}

}  // namespace

bool OutputTree::Exists() const {
    std::error_code error;
    return fs::is_directory(fFolder, error);
}

std::vector<TreeResource> OutputTree::Resources() const {
    std::vector<TreeResource> resources;
    std::error_code error;
    for (fs::directory_iterator entry(fFolder, error), end; !error && entry != end; entry.increment(error)) {
        std::string name = entry->path().filename().string();
        if (!name.starts_with(kTypeFolderPrefix)) continue;
        if (auto type = TypeOfText(std::string_view(name).substr(kTypeFolderPrefix.size())))
            AddResourcesOf(*type, entry->path(), resources);
    }
    std::sort(resources.begin(), resources.end(), ByTypeAndId);
    return resources;
}

std::vector<TreeResource> OutputTree::Resources(std::uint32_t type) const {
    std::vector<TreeResource> resources;
    AddResourcesOf(type, fFolder / TypeFolderName(type), resources);
    std::sort(resources.begin(), resources.end(), ByTypeAndId);
    return resources;
}

void OutputTree::AddResourcesOf(std::uint32_t type, fs::path const& typeFolder,
                                std::vector<TreeResource>& resources) const {
    std::error_code error;
    for (fs::directory_iterator entry(typeFolder, error), end; !error && entry != end; entry.increment(error)) {
        auto id = velor::ResourceTree::IdOfFileName(entry->path().filename().string());
        std::error_code fileError;
        if (!id || !entry->is_regular_file(fileError)) continue;
        std::uintmax_t size = entry->file_size(fileError);
        if (!fileError) resources.push_back({type, *id, size, entry->path()});
    }
}

fs::path OutputTree::PathOf(std::uint32_t type, std::int16_t id) const {
    return fFolder / TypeFolderName(type) / velor::ResourceTree::FileNameOf(id);
}

bool OutputTree::Has(std::uint32_t type, std::int16_t id) const {
    std::error_code error;
    return fs::is_regular_file(PathOf(type, id), error);
}

std::optional<std::string> OutputTree::ReadFile(fs::path const& path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::ostringstream bytes;
    bytes << in.rdbuf();
    if (in.bad()) return std::nullopt;
    return std::move(bytes).str();
}

std::optional<std::uint32_t> OutputTree::TypeOfText(std::string_view text) {
    if (text.empty() || text.size() > kTypeLength || text.find('\0') != std::string_view::npos)
        return std::nullopt;
    std::uint32_t type = 0;
    for (std::size_t i = 0; i < kTypeLength; ++i)
        type = type << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    return type;
}
