// Prints the version records that the build compiled from about.vd, through the run-time reader.
// The resource folder is the one the build wrote, unless another is named on the command line.
#include <velor/ResourceTree.h>

#include <cstdint>
#include <iostream>

namespace {

// Whole-byte fields on byte boundaries are stored low-order byte first.
std::uint32_t LittleEndian(velor::Bytes const& bytes, std::size_t at, std::size_t width) {
    std::uint32_t value = 0;
    for (std::size_t i = width; i-- > 0;) value = value << 8 | bytes.data()[at + i];
    return value;
}

}  // namespace

int main(int argc, char** argv) {
    auto tree = velor::ResourceTree::Open(argc > 1 ? argv[1] : ABOUT_RESOURCES);
    if (!tree) {
        std::cerr << "about: " << tree.error().message << "\n";
        return 1;
    }
    auto versions = tree->Resources("VERS");
    if (!versions) {
        std::cerr << "about: " << versions.error().message << "\n";
        return 1;
    }
    for (auto const& entry : *versions) {
        auto bytes = tree->Load(entry.type, entry.id);
        if (!bytes || bytes->size() != 10) {
            std::cerr << "about: version record " << entry.id << " is unreadable\n";
            return 1;
        }
        std::cout << "VERS " << entry.id << ": " << LittleEndian(*bytes, 0, 2) << "." << LittleEndian(*bytes, 2, 2)
                  << " channel " << LittleEndian(*bytes, 4, 1) << " build " << LittleEndian(*bytes, 6, 4) << "\n";
    }
    return 0;
}
