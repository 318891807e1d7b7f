// The command line, messages and framing of velor-walk. Finding files is OutputTree's business and
// finding descriptions DescriptionIndex's; this unit decides what to say about what they found.
#include "WalkTool.h"

#include <cctype>
#include <charconv>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "DescriptionIndex.h"
#include "OutputTree.h"
#include "RCDescWalker.h"
#include "velor/ResourceTree.h"

namespace {

constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

constexpr char kUsage[] =
    "usage: velor-walk OUTDIR            list the resources compiled into OUTDIR\n"
    "       velor-walk OUTDIR TYPE ID    list one resource field by field\n"
    "       velor-walk --help            show this text\n"
    "\n"
    "OUTDIR is the folder of the path given to velor with -o. TYPE is the name of a type in the\n"
    ".vd file or the four characters of a resource type, ID the resource's id. Listing a resource\n"
    "field by field needs its descriptions: put '#pragma velor writedescriptions on' in the .vd\n"
    "file before its types and resources.\n";

int Fail(std::string const& message) {
    std::fflush(stdout);
    std::fprintf(stderr, "velor-walk: %s\n", message.c_str());
    return kExitFailure;
}

int UsageError(std::string const& message) {
    std::fprintf(stderr, "velor-walk: %s\n%s", message.c_str(), kUsage);
    return kExitUsage;
}

std::string Quoted(std::string const& text) { return "'" + text + "'"; }

std::string Quoted(std::filesystem::path const& path) { return Quoted(path.string()); }

// The four characters of a type as they can be shown, a byte that cannot as '?'.
std::string ShownType(std::uint32_t type) {
    std::string text = velor::ResourceType(type).Text();
    for (char& c : text)
        if (!std::isprint(static_cast<unsigned char>(c))) c = '?';
    return text;
}

std::string Named(std::uint32_t type, std::int16_t id) { return Quoted(ShownType(type)) + " " + std::to_string(id); }

constexpr char kSwitchDescriptionsOn[] = "put '#pragma velor writedescriptions on' in the .vd file and compile it again";

std::string NoDescriptions(OutputTree const& tree) {
    return Quoted(tree.Folder()) + " holds no descriptions: " + kSwitchDescriptionsOn;
}

std::string Damaged(std::filesystem::path const& path) {
    return "the description " + Quoted(path) + " is damaged: it does not end in the one zero byte that ends a description";
}

// A resource id as the .vd file writes it, or as the file name shows it (65535 for -1).
std::optional<std::int16_t> ParseId(std::string const& text) {
    long value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < INT16_MIN || value > UINT16_MAX)
        return std::nullopt;
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(value));
}

// The name of the type a resource was compiled with, where exactly one type description of its
// resource type has an instance description that fits it; empty otherwise.
std::string TypeNameOf(DescriptionIndex& index, TreeResource const& resource) {
    std::string name;
    int found = 0;
    for (TypeDescription const* type : index.TypesOf(resource.type))
        if (index.FindInstance(type->name, resource.type, resource.id).size() == 1) {
            name = type->name;
            ++found;
        }
    return found == 1 ? name : std::string();
}

int ListFolder(OutputTree const& tree) {
    if (!tree.Exists()) return Fail("no output folder " + Quoted(tree.Folder()));
    std::vector<TreeResource> resources = tree.Resources();
    if (resources.empty()) return Fail(Quoted(tree.Folder()) + " holds no compiled resources");
    DescriptionIndex index(tree);
    for (TreeResource const& resource : resources) {
        std::string name = TypeNameOf(index, resource);
        std::printf("%-4s %6d %9ju%s%s\n", ShownType(resource.type).c_str(), resource.id, resource.size,
                    name.empty() ? "" : "  ", name.c_str());
    }
    return 0;
}

struct WalkTarget {
    TypeDescription const* type;
    std::uint32_t resourceType;
    std::int16_t id;
    std::int16_t instance;
};

// The lines ahead of the listing: which resource, and which files describe it.
void PrintFraming(WalkTarget const& target, std::size_t size, std::filesystem::path const& resourcePath,
                  std::filesystem::path const& instancePath) {
    std::printf("// resource %s of type %s, %zu bytes: %s\n// type description: %s\n// instance description: %s\n\n",
                Named(target.resourceType, target.id).c_str(), target.type->name.c_str(), size, resourcePath.c_str(),
                target.type->path.c_str(), instancePath.c_str());
}

int WalkOne(OutputTree const& tree, DescriptionIndex& index, WalkTarget const& target) {
    std::filesystem::path resourcePath = tree.PathOf(target.resourceType, target.id);
    std::optional<std::string> bytes = OutputTree::ReadFile(resourcePath);
    if (!bytes) return Fail("cannot read " + Quoted(resourcePath));
    std::optional<std::string> typeText = DescriptionIndex::TextOf(target.type->text);
    if (!typeText) return Fail(Damaged(target.type->path));
    std::string const* instanceBytes = index.InstanceBytes(target.instance);
    std::optional<std::string> instanceText = instanceBytes ? DescriptionIndex::TextOf(*instanceBytes) : std::nullopt;
    std::filesystem::path instancePath = index.InstancePath(target.instance);
    if (!instanceText) return Fail(Damaged(instancePath));
    PrintFraming(target, bytes->size(), resourcePath, instancePath);
    try {
        RCDescWalker(bytes->data(), bytes->size(), instanceText->c_str(), typeText->c_str()).Walk();
    } catch (RC_xBadDescription const&) {
        // The listing stops where the damage was found; its last line is ended before the message.
        std::putchar('\n');
        return Fail("the descriptions of " + Named(target.resourceType, target.id) + " do not fit its bytes: " +
                    Quoted(instancePath) + " or " + Quoted(target.type->path) + " is damaged");
    }
    return 0;
}

std::string JoinIds(std::vector<std::int16_t> const& ids) {
    std::string text;
    for (std::int16_t id : ids) text += (text.empty() ? "" : ", ") + std::to_string(static_cast<std::uint16_t>(id));
    return text;
}

// A missing resource; where TYPE is known to no type description, that is said too, for it may
// have been meant as a type's name.
std::string NoSuchResource(OutputTree const& tree, DescriptionIndex const& index, std::string const& typeArg,
                           bool typeKnown, std::uint32_t resourceType, std::int16_t id) {
    std::string missing = "no resource " + Named(resourceType, id) + " in " + Quoted(tree.Folder());
    if (typeKnown) return missing;
    if (index.HasTypeDescriptions()) return "no type named " + Quoted(typeArg) + ", and " + missing;
    return missing + ", and no descriptions there to know a type by its name: " + kSwitchDescriptionsOn;
}

// The resource type that TYPE stands for, a type's name first and four characters second, and
// the type descriptions that may have compiled a resource of it. Answers 0 or the exit code of
// the failure it reported.
int ResolveType(OutputTree const& tree, DescriptionIndex const& index, std::string const& typeArg,
                std::uint32_t& resourceType, std::vector<TypeDescription const*>& types) {
    types = index.TypesNamed(typeArg);
    if (types.size() > 1) return Fail("several type descriptions are named " + Quoted(typeArg));
    std::optional<std::uint32_t> found = types.empty() ? OutputTree::TypeOfText(typeArg) : types[0]->resourceType;
    if (!found && !types.empty()) return Fail("type " + Quoted(typeArg) + " is not a resource type");
    if (!found)
        return Fail(index.HasTypeDescriptions()
                        ? "no type named " + Quoted(typeArg) + " among the descriptions in " + Quoted(tree.Folder())
                        : NoDescriptions(tree));
    if (types.empty()) types = index.TypesOf(*found);
    resourceType = *found;
    return 0;
}

// The one type description and the one instance description that fit the resource. Answers 0
// or the exit code of the failure it reported.
int ChooseDescriptions(OutputTree const& tree, DescriptionIndex& index, std::vector<TypeDescription const*> const& types,
                       WalkTarget& target) {
    std::vector<WalkTarget> fits;
    std::vector<std::int16_t> undecided;
    for (TypeDescription const* type : types) {
        std::vector<std::int16_t> instances = index.FindInstance(type->name, target.resourceType, target.id);
        if (instances.size() == 1) fits.push_back({type, target.resourceType, target.id, instances[0]});
        if (instances.size() > 1) undecided.insert(undecided.end(), instances.begin(), instances.end());
    }
    std::string named = Named(target.resourceType, target.id);
    if (!undecided.empty())
        return Fail("cannot tell which of the instance descriptions " + JoinIds(undecided) + " in " +
                    Quoted(index.InstancePath(undecided[0]).parent_path()) + " belongs to " + named);
    if (fits.size() > 1)
        return Fail("several types of " + Quoted(ShownType(target.resourceType)) + " have a description that fits " +
                    named + ": give the type's name rather than its four characters");
    if (fits.empty()) return Fail("no instance description of " + named + " in " + Quoted(tree.Folder()));
    target = fits[0];
    return 0;
}

int WalkResource(OutputTree const& tree, std::string const& typeArg, std::int16_t id) {
    if (!tree.Exists()) return Fail("no output folder " + Quoted(tree.Folder()));
    DescriptionIndex index(tree);
    WalkTarget target{nullptr, 0, id, 0};
    std::vector<TypeDescription const*> types;
    if (int failed = ResolveType(tree, index, typeArg, target.resourceType, types)) return failed;
    if (!tree.Has(target.resourceType, id))
        return Fail(NoSuchResource(tree, index, typeArg, !types.empty(), target.resourceType, id));
    if (!index.HasTypeDescriptions() || !index.HasInstanceDescriptions()) return Fail(NoDescriptions(tree));
    if (int failed = ChooseDescriptions(tree, index, types, target)) return failed;
    return WalkOne(tree, index, target);
}

int Run(std::vector<std::string> const& args) {
    if (!args.empty() && (args[0] == "--help" || args[0] == "-h")) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (!args.empty() && args[0].starts_with('-')) return UsageError("unknown option " + Quoted(args[0]));
    if (args.size() == 1) return ListFolder(OutputTree(args[0]));
    if (args.size() != 3) return UsageError(args.empty() ? "no output folder given" : "expected OUTDIR, or OUTDIR TYPE ID");
    std::optional<std::int16_t> id = ParseId(args[2]);
    if (!id) return UsageError(Quoted(args[2]) + " is not a resource id");
    return WalkResource(OutputTree(args[0]), args[1], *id);
}

}  // namespace

int WalkToolMain(int argc, char** argv) {
    try {
        return Run(std::vector<std::string>(argv + 1, argv + argc));
    } catch (std::exception const& exception) {
        return Fail(exception.what());
    }
}
