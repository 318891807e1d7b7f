// DescriptionIndex: finds the two description texts of a compiled resource in an output folder.
//
// A type description ('FWtD') opens with "(type Name" and names its resource type in
// "(restype N)"; its id comes from the hash of the name. An instance description ('FWrD') opens
// with the same "(type Name" and carries nothing of the resource's id: its own id is the hash of
// "Name(id)" moved on, past ids already taken, to the next free one. So the description of one
// resource lies in the run of taken ids that starts at its hash. Within that run a text that
// opens with the type's name is ours unless another resource of the type could have taken it;
// where that leaves more than one, the index says so and does not pick.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "OutputTree.h"
#include "RCDescription.h"

struct TypeDescription {
    std::string name;
    std::optional<std::uint32_t> resourceType;
    std::filesystem::path path;
    std::string text;
};

class DescriptionIndex {
public:
    // Reads every type description of the tree.
    explicit DescriptionIndex(OutputTree const& tree);

    bool HasTypeDescriptions() const { return !fTypes.empty(); }
    bool HasInstanceDescriptions() const { return !fInstanceIds.empty(); }
    std::vector<TypeDescription const*> TypesNamed(std::string const& name) const;
    std::vector<TypeDescription const*> TypesOf(std::uint32_t resourceType) const;

    // The ids of the instance descriptions that may be the one of resource (type, id) compiled
    // with the named type: exactly one when it is found, none when there is none.
    std::vector<std::int16_t> FindInstance(std::string const& typeName, std::uint32_t type, std::int16_t id);
    std::filesystem::path InstancePath(std::int16_t id) const;
    // The whole file of an instance description, or null when it cannot be read.
    std::string const* InstanceBytes(std::int16_t id);

    // The name that opens a description text, or nothing when the text opens otherwise.
    static std::optional<std::string> DescribedName(std::string const& text);
    // The text of a description file up to its terminating zero byte, or nothing when the file
    // does not end in exactly one.
    static std::optional<std::string> TextOf(std::string const& bytes);
    // The id the compiler first tries for the instance description of (typeName, id).
    static std::int16_t InstanceHash(std::string const& typeName, std::int16_t id);

private:
    // The files in the run from the resource's hash that open with the type's name.
    std::vector<std::int16_t> Candidates(std::string const& typeName, std::int16_t id);
    // The taken instance-description ids from start on, up to the first free one.
    std::vector<std::int16_t> RunFrom(std::int16_t start) const;
    bool OpensWith(std::int16_t instanceId, std::string const& typeName);

    OutputTree const& fTree;
    std::vector<TypeDescription> fTypes;
    std::set<std::int16_t> fInstanceIds;
    std::map<std::int16_t, std::optional<std::string>> fInstanceFiles;
};
