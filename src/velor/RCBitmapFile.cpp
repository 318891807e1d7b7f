// Bitmap conversion in three steps: the headers decide the geometry, the palette becomes a
// colour table, and the rows are laid out from the end of the file's block backwards, so that the
// bottom-up rows of the file come out top row first. Every piece of the file is taken through one
// bounded cursor, which refuses a request for more bytes than are left.
#include "RCBitmapFile.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "RCBindings.h"

namespace {

constexpr std::uint16_t kBitmapMagic = 0x424D;
constexpr std::uint64_t kFileHeaderSize = 22;
constexpr std::uint64_t kSizeFieldSize = 8;
constexpr std::uint64_t kLongInfoHeader = 76;
constexpr std::uint64_t kLongInfoRest = 68;
constexpr std::uint64_t kShortInfoHeader = 16;
constexpr std::uint64_t kShortInfoRest = 8;
// The short form measures its palette as if the headers in front of it took 16 bytes fewer than
// the file header's 22 and its own 16 do: the size is the rows offset less 32.
constexpr std::uint64_t kShortPaletteSkew = 16;

constexpr std::size_t kPixMapSize = 62;
constexpr std::uint16_t kPixMapFlag = 0x8000;
// Rows wider than this lose their high bits when laid out; the header keeps the full width.
constexpr std::uint16_t kRowBytesMask = 0x1FFF;
constexpr std::uint32_t kResolution72Dpi = 0x00480000;  // 72.0 in 16.16 fixed point

constexpr std::uint64_t kColourTableHeader = 8;
constexpr std::uint64_t kColourEntrySize = 8;

using Bytes = unsigned char const*;

// The unread rest of the file. Take hands out the next bytes in place, or null when fewer are left.
class FileCursor {
public:
    explicit FileCursor(PP_CTextReader file)
        : fNext(reinterpret_cast<Bytes>(file.GetReadPtr())), fLeft(file.Readable()) {}

    Bytes Take(std::uint64_t count) {
        if (count > fLeft) return nullptr;
        Bytes taken = fNext;
        fNext += count;
        fLeft -= count;
        return taken;
    }

private:
    Bytes fNext;
    std::uint64_t fLeft;
};

std::uint16_t BigEndian16(Bytes p) { return static_cast<std::uint16_t>(p[0] << 8 | p[1]); }
std::uint16_t LittleEndian16(Bytes p) { return static_cast<std::uint16_t>(p[1] << 8 | p[0]); }

std::uint32_t BigEndian32(Bytes p) {
    return static_cast<std::uint32_t>(p[0]) << 24 | static_cast<std::uint32_t>(p[1]) << 16 |
           static_cast<std::uint32_t>(p[2]) << 8 | p[3];
}

std::uint32_t LittleEndian32(Bytes p) {
    return static_cast<std::uint32_t>(p[3]) << 24 | static_cast<std::uint32_t>(p[2]) << 16 |
           static_cast<std::uint32_t>(p[1]) << 8 | p[0];
}

// An 8-byte field: a big-endian 32-bit value, then the high half, low byte first.
std::uint64_t SizeField(Bytes p) {
    return static_cast<std::uint64_t>(LittleEndian32(p + 4)) << 32 | BigEndian32(p);
}

struct Geometry {
    std::uint64_t totalSize = 0;   // of the file, as its header says
    std::uint64_t bitsOffset = 0;  // where its rows start, as its header says
    std::uint64_t headerSize = 0;  // of the information header
    std::uint64_t width = 0;
    std::uint64_t height = 0;
    std::uint16_t depth = 0;       // bits per pixel
    std::uint16_t rowBytes = 0;
};

// The file header, with its magic word in the processor's order (low byte first) and two reserved
// words that must be zero, followed by the size of the information header.
bool ReadFileHeader(FileCursor& file, Geometry& geometry) {
    Bytes header = file.Take(kFileHeaderSize);
    if (!header) return false;
    if (LittleEndian16(header) != kBitmapMagic || LittleEndian16(header + 10) != 0 || LittleEndian16(header + 12) != 0)
        return false;
    geometry.totalSize = SizeField(header + 2);
    geometry.bitsOffset = SizeField(header + 14);
    Bytes headerSize = file.Take(kSizeFieldSize);
    if (!headerSize) return false;
    geometry.headerSize = SizeField(headerSize);
    return true;
}

// The long header measures in 64 bits and the short one in signed 32, which is why the two row
// sizes are computed apart.
bool ReadInfoHeader(FileCursor& file, Geometry& geometry) {
    if (geometry.headerSize == kLongInfoHeader) {
        Bytes info = file.Take(kLongInfoRest);
        if (!info) return false;
        geometry.width = SizeField(info);
        geometry.height = SizeField(info + 8);
        geometry.depth = BigEndian16(info + 18);
        geometry.rowBytes = static_cast<std::uint16_t>(((geometry.width * geometry.depth + 31) >> 5) << 2);
        return true;
    }
    if (geometry.headerSize == kShortInfoHeader) {
        Bytes info = file.Take(kShortInfoRest);
        if (!info) return false;
        geometry.width = BigEndian16(info);
        geometry.height = BigEndian16(info + 2);
        geometry.depth = BigEndian16(info + 6);
        auto bits = static_cast<std::int32_t>(static_cast<std::uint32_t>(geometry.width * geometry.depth + 31));
        geometry.rowBytes = static_cast<std::uint16_t>(bits / 32 * 4);
        return true;
    }
    return false;
}

void Put16(unsigned char* p, std::uint16_t value) {
    p[0] = static_cast<unsigned char>(value);
    p[1] = static_cast<unsigned char>(value >> 8);
}

void Put32(unsigned char* p, std::uint32_t value) {
    Put16(p, static_cast<std::uint16_t>(value));
    Put16(p + 2, static_cast<std::uint16_t>(value >> 16));
}

// The pixel map header in the processor's order. Base address, plane bytes, colour table handle
// and the reserved field stay zero.
bool AddPixMapHeader(RCBindings* bindings, RCScanner* scanner, Geometry const& geometry) {
    unsigned char pixMap[kPixMapSize] = {};
    Put16(pixMap + 8, geometry.rowBytes | kPixMapFlag);
    Put16(pixMap + 14, static_cast<std::uint16_t>(geometry.height));
    Put16(pixMap + 16, static_cast<std::uint16_t>(geometry.width));
    Put32(pixMap + 26, kResolution72Dpi);
    Put32(pixMap + 30, kResolution72Dpi);
    Put16(pixMap + 36, geometry.depth);
    Put16(pixMap + 38, 1);
    Put16(pixMap + 40, geometry.depth);
    return bindings->AddBytes(scanner, pixMap, kPixMapSize);
}

// The palette's layout: its size in the file, the size of its entries there, the shift that
// widens a component to 16 bits, and whether the filling loop reaches the last entry.
struct PaletteForm {
    std::uint64_t fileBytes;
    std::uint64_t entrySize;
    int componentShift;
    // The long form fills up to and including the entry that the size field names; the short form
    // stops before it, so its last entry stays zero. The two forms differ so in the format.
    bool fillsLastEntry;
};

PaletteForm PaletteFormOf(Geometry const& geometry) {
    std::uint64_t const beforeRows = geometry.bitsOffset - geometry.headerSize;
    if (geometry.headerSize == kLongInfoHeader) return {beforeRows - kFileHeaderSize, 4, 8, true};
    return {beforeRows - kShortPaletteSkew, 3, 0, false};
}

// The table's length in bytes, which the format ties to the palette's size in the file rather
// than to its count of entries: with 3-byte entries it need not be a whole number of them.
std::uint64_t ColourTableSize(PaletteForm const& form) {
    if (form.entrySize == 4) return (form.fileBytes & ~std::uint64_t{3}) * 2 + kColourTableHeader;
    return form.fileBytes * 8 / 3 + kColourTableHeader;
}

// How many entries the loop over the table fills: the size field is a signed 16-bit count, so a
// palette of more than 32768 entries fills as many as the cut field says, and never more than fit.
std::uint64_t FilledEntries(std::int16_t sizeField, PaletteForm const& form, std::uint64_t room) {
    long reached = form.fillsLastEntry ? sizeField + 1L : sizeField;
    if (reached <= 0) return 0;
    return std::min<std::uint64_t>(static_cast<std::uint64_t>(reached), room);
}

bool BuildColourTable(FileCursor& file, Geometry const& geometry, std::vector<unsigned char>& table) {
    PaletteForm const form = PaletteFormOf(geometry);
    Bytes palette = file.Take(form.fileBytes);
    if (!palette) return false;
    table.assign(ColourTableSize(form), 0);
    auto const sizeField = static_cast<std::uint16_t>(form.fileBytes / form.entrySize - 1);
    Put16(&table[6], sizeField);
    std::uint64_t const room = (table.size() - kColourTableHeader) / kColourEntrySize;
    std::uint64_t const filled = FilledEntries(static_cast<std::int16_t>(sizeField), form, room);
    for (std::uint64_t i = 0; i < filled; ++i) {
        Bytes colour = palette + i * form.entrySize;
        unsigned char* entry = &table[kColourTableHeader + i * kColourEntrySize];
        Put16(entry, static_cast<std::uint16_t>(i));
        Put16(entry + 2, static_cast<std::uint16_t>(colour[2] << form.componentShift));
        Put16(entry + 4, static_cast<std::uint16_t>(colour[1] << form.componentShift));
        Put16(entry + 6, static_cast<std::uint16_t>(colour[0] << form.componentShift));
    }
    return true;
}

// The rows, last first. A block that is no whole number of rows loses the piece at its start,
// and a row size of 0 lays out nothing.
bool AddRows(FileCursor& file, Geometry const& geometry, RCBindings* bindings, RCScanner* scanner) {
    std::uint64_t const blockSize = geometry.totalSize - geometry.bitsOffset;
    Bytes block = file.Take(blockSize);
    if (!block) return false;
    std::uint64_t const rowSize = geometry.rowBytes & kRowBytesMask;
    std::uint64_t const rows = rowSize == 0 ? 0 : blockSize / rowSize;
    for (std::uint64_t row = 1; row <= rows; ++row)
        if (!bindings->AddBytes(scanner, block + blockSize - row * rowSize, static_cast<long>(rowSize))) return false;
    return true;
}

}  // namespace

bool ConvertBitmapFile(PP_CTextReader file, RCBindings* bindings, RCScanner* scanner) {
    FileCursor cursor(file);
    Geometry geometry;
    if (!ReadFileHeader(cursor, geometry) || !ReadInfoHeader(cursor, geometry)) return false;
    if (!AddPixMapHeader(bindings, scanner, geometry)) return false;
    std::vector<unsigned char> table;
    if (!BuildColourTable(cursor, geometry, table)) return false;
    if (!AddRows(cursor, geometry, bindings, scanner)) return false;
    return bindings->AddBytes(scanner, table.data(), static_cast<long>(table.size()));
}
