// Finding descriptions by name and hash. Texts are read with the walker's own scanner, so that
// what the index takes for a description is what the walker will be able to read.
#include "DescriptionIndex.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <set>

#include "RCDescWalker.h"
#include "RCHash.h"

namespace {

using Helper = RCDescWalkerHelper;

PP_CTextReader ReaderOver(std::string const& text) { return PP_CTextReader(text.data(), text.size()); }

// The bytes before the first zero byte: all a damaged text still says about its name.
std::string BeforeZero(std::string const& bytes) { return bytes.substr(0, bytes.find('\0')); }

// "(restype N)" among the parts of a type description.
std::optional<std::uint32_t> ResourceTypeOf(std::string const& text) {
    try {
        PP_CTextReader reader = ReaderOver(text);
        Helper::EnterSExpr(reader, Helper::kType);
        Helper::ScanSExpr(reader);
        PP_CTextReader restype = Helper::FindSExpr(reader, Helper::kResType);
        if (restype.IsEOF()) return std::nullopt;
        Helper::EnterSExpr(restype);
        unsigned long number = Helper::ReadNumber(restype);
        if (number > UINT32_MAX) return std::nullopt;
        return static_cast<std::uint32_t>(number);
    } catch (RC_xBadDescription const&) {
        return std::nullopt;
    }
}

}  // namespace

DescriptionIndex::DescriptionIndex(OutputTree const& tree) : fTree(tree) {
    for (TreeResource const& resource : tree.Resources(kTypeDescriptionType)) {
        std::optional<std::string> bytes = OutputTree::ReadFile(resource.path);
        if (!bytes) continue;
        std::string readable = BeforeZero(*bytes);
        if (std::optional<std::string> name = DescribedName(readable))
            fTypes.push_back({*name, ResourceTypeOf(readable), resource.path, std::move(*bytes)});
    }
    for (TreeResource const& resource : tree.Resources(kInstanceDescriptionType)) fInstanceIds.insert(resource.id);
}

std::vector<TypeDescription const*> DescriptionIndex::TypesNamed(std::string const& name) const {
    std::vector<TypeDescription const*> found;
    for (TypeDescription const& type : fTypes)
        if (type.name == name) found.push_back(&type);
    return found;
}

std::vector<TypeDescription const*> DescriptionIndex::TypesOf(std::uint32_t resourceType) const {
    std::vector<TypeDescription const*> found;
    for (TypeDescription const& type : fTypes)
        if (type.resourceType == resourceType) found.push_back(&type);
    return found;
}

// The candidates of every resource of the type compete for the same files. A file that only one
// resource can own is that resource's, and that resource then owns no other file; repeating this
// settles the chains that colliding hashes make.
std::vector<std::int16_t> DescriptionIndex::FindInstance(std::string const& typeName, std::uint32_t type,
                                                         std::int16_t id) {
    std::vector<std::int16_t> mine = Candidates(typeName, id);
    if (mine.size() <= 1) return mine;
    std::map<std::int16_t, std::set<std::int16_t>> owners;
    for (std::int16_t file : mine) owners[file];
    for (TreeResource const& resource : fTree.Resources(type))
        for (std::int16_t file : Candidates(typeName, resource.id))
            if (owners.count(file) != 0) owners[file].insert(resource.id);
    for (bool settled = false; !settled;) {
        settled = true;
        for (auto const& [file, who] : owners) {
            if (who.size() != 1) continue;
            for (auto& [other, otherWho] : owners)
                if (other != file && otherWho.erase(*who.begin()) != 0) settled = false;
        }
    }
    std::vector<std::int16_t> possible;
    for (auto const& [file, who] : owners)
        if (who.count(id) != 0) possible.push_back(file);
    return possible;
}

std::vector<std::int16_t> DescriptionIndex::Candidates(std::string const& typeName, std::int16_t id) {
    std::vector<std::int16_t> found;
    for (std::int16_t file : RunFrom(InstanceHash(typeName, id)))
        if (OpensWith(file, typeName)) found.push_back(file);
    return found;
}

std::vector<std::int16_t> DescriptionIndex::RunFrom(std::int16_t start) const {
    std::vector<std::int16_t> run;
    std::int16_t id = start;
    while (fInstanceIds.count(id) != 0 && run.size() <= UINT16_MAX) {
        run.push_back(id);
        id = static_cast<std::int16_t>(static_cast<std::uint16_t>(id) + 1);
    }
    return run;
}

bool DescriptionIndex::OpensWith(std::int16_t instanceId, std::string const& typeName) {
    std::string const* bytes = InstanceBytes(instanceId);
    return bytes != nullptr && DescribedName(BeforeZero(*bytes)) == typeName;
}

std::filesystem::path DescriptionIndex::InstancePath(std::int16_t id) const {
    return fTree.PathOf(kInstanceDescriptionType, id);
}

std::string const* DescriptionIndex::InstanceBytes(std::int16_t id) {
    auto cached = fInstanceFiles.find(id);
    if (cached == fInstanceFiles.end())
        cached = fInstanceFiles.emplace(id, OutputTree::ReadFile(InstancePath(id))).first;
    return cached->second ? &*cached->second : nullptr;
}

std::optional<std::string> DescriptionIndex::DescribedName(std::string const& text) {
    try {
        PP_CTextReader reader = ReaderOver(text);
        Helper::EnterSExpr(reader, Helper::kType);
        PP_CTextReader name = Helper::ScanSExpr(reader);
        if (name.IsEOF() || name.PeekChar() == '(' || name.PeekChar() == '"') return std::nullopt;
        return std::string(name.GetReadPtr(), name.Readable());
    } catch (RC_xBadDescription const&) {
        return std::nullopt;
    }
}

std::optional<std::string> DescriptionIndex::TextOf(std::string const& bytes) {
    if (bytes.empty() || bytes.find('\0') != bytes.size() - 1) return std::nullopt;
    return bytes.substr(0, bytes.size() - 1);
}

std::int16_t DescriptionIndex::InstanceHash(std::string const& typeName, std::int16_t id) {
    char suffix[32];
    std::snprintf(suffix, sizeof suffix, "(%04lx)", static_cast<long>(id));
    std::string hashed = typeName + suffix;
    long hash = RCHash(hashed.data(), static_cast<int>(std::min<std::size_t>(hashed.size(), INT_MAX)));
    return static_cast<std::int16_t>(hash);
}
