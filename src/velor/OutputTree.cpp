// Listing and reading an output folder. Every file-system call takes an error code, so that a
// folder that vanishes or cannot be read shortens the listing rather than ending the process.
#include "OutputTree.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kTypeFolderPrefix = "vlbk_";
constexpr std::string_view kResourceSuffix = ".vlbk";
constexpr std::size_t kTypeLength = 4;

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
    AddResourcesOf(type, fFolder / (std::string(kTypeFolderPrefix) + TypeText(type)), resources);
    std::sort(resources.begin(), resources.end(), ByTypeAndId);
    return resources;
}

void OutputTree::AddResourcesOf(std::uint32_t type, fs::path const& typeFolder,
                                std::vector<TreeResource>& resources) const {
    std::error_code error;
    for (fs::directory_iterator entry(typeFolder, error), end; !error && entry != end; entry.increment(error)) {
        auto id = IdOfFileName(entry->path().filename().string());
        std::error_code fileError;
        if (!id || !entry->is_regular_file(fileError)) continue;
        std::uintmax_t size = entry->file_size(fileError);
        if (!fileError) resources.push_back({type, *id, size, entry->path()});
    }
}

fs::path OutputTree::PathOf(std::uint32_t type, std::int16_t id) const {
    return fFolder / (std::string(kTypeFolderPrefix) + TypeText(type)) /
           (std::to_string(static_cast<std::uint16_t>(id)) + std::string(kResourceSuffix));
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

std::string OutputTree::TypeText(std::uint32_t type) {
    std::string text;
    for (int shift = 24; shift >= 0 && ((type >> shift) & 0xFF) != 0; shift -= 8)
        text += static_cast<char>((type >> shift) & 0xFF);
    return text;
}

std::optional<std::uint32_t> OutputTree::TypeOfText(std::string_view text) {
    if (text.empty() || text.size() > kTypeLength || text.find('\0') != std::string_view::npos)
        return std::nullopt;
    std::uint32_t type = 0;
    for (std::size_t i = 0; i < kTypeLength; ++i)
        type = type << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    return type;
}

std::optional<std::int16_t> OutputTree::IdOfFileName(std::string_view name) {
    if (!name.ends_with(kResourceSuffix)) return std::nullopt;
    std::string_view digits = name.substr(0, name.size() - kResourceSuffix.size());
    if (digits.empty() || digits.size() > 5 || (digits.size() > 1 && digits[0] == '0')) return std::nullopt;
    std::uint32_t value = 0;
    for (char c : digits) {
        if (c < '0' || c > '9') return std::nullopt;
        value = value * 10 + static_cast<std::uint32_t>(c - '0');
    }
    if (value > 0xFFFF) return std::nullopt;
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(value));
}
