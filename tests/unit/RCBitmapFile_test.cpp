#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "RCBitmapFile.h"
#include "RCTestScanner.h"

namespace {

std::string BigEndian16(std::uint16_t v) { return {char(v >> 8), char(v)}; }

// The 8-byte field of the accepted form: big-endian low half, then the high half low byte first.
std::string SizeField(std::uint64_t v) {
    std::uint32_t low = static_cast<std::uint32_t>(v), high = static_cast<std::uint32_t>(v >> 32);
    return {char(low >> 24), char(low >> 16), char(low >> 8), char(low),
            char(high),      char(high >> 8), char(high >> 16), char(high >> 24)};
}

std::string FileHeader(std::uint64_t total, std::uint64_t bitsOffset, std::uint64_t headerSize) {
    return std::string("\x4D\x42", 2) + SizeField(total) + std::string(4, '\0') + SizeField(bitsOffset) +
           SizeField(headerSize);
}

// A file with the short header: 3-byte palette entries, rows starting at offset 38 + palette.
std::string ShortFile(std::uint16_t width, std::uint16_t height, std::uint16_t depth, std::string const& palette,
                      std::string const& rows) {
    std::uint64_t bitsOffset = 32 + palette.size();
    return FileHeader(bitsOffset + rows.size(), bitsOffset, 16) + BigEndian16(width) + BigEndian16(height) +
           BigEndian16(1) + BigEndian16(depth) + palette + rows;
}

// A file with the long header: 4-byte palette entries, rows starting at offset 98 + palette.
std::string LongFile(std::uint64_t width, std::uint64_t height, std::uint16_t depth, std::string const& palette,
                     std::string const& rows) {
    std::uint64_t bitsOffset = 98 + palette.size();
    return FileHeader(bitsOffset + rows.size(), bitsOffset, 76) + SizeField(width) + SizeField(height) +
           BigEndian16(1) + BigEndian16(depth) + std::string(48, '\0') + palette + rows;
}

// The pixel map header as text, for a row size, bounds and depth.
std::string PixMap(char const* rowBytes, char const* bottom, char const* right, char const* depth) {
    return std::string("00 00 00 00 00 00 00 00 ") + rowBytes + " 00 00 00 00 " + bottom + " " + right +
           " 00 00 00 00 00 00 00 00 00 00 48 00 00 00 48 00 00 00 " + depth + " 01 00 " + depth +
           " 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00";
}

class BitmapConversion : public testing::Test {
protected:
    // Converts the bytes from a block of exactly their size, so that a read past them is caught.
    bool Convert(std::string const& file) {
        std::unique_ptr<char[]> block(new char[file.size()]);
        file.copy(block.get(), file.size());
        return ConvertBitmapFile(PP_CTextReader(block.get(), file.size()), fBindings.get(), fScanner);
    }

    RCTestScanner fScanner{""};
    RCTestBindings fBindings{fScanner};
};

TEST_F(BitmapConversion, ShortHeaderFlipsRowsAndLeavesTheLastColourEmpty) {
    ASSERT_TRUE(Convert(ShortFile(1, 2, 8, "\x01\x02\x03\x04\x05\x06", "AAAABBBB")));
    EXPECT_EQ(PixMap("04 80", "02 00", "01 00", "08 00") +
                  " 42 42 42 42 41 41 41 41"
                  " 00 00 00 00 00 00 01 00 00 00 03 00 02 00 01 00 00 00 00 00 00 00 00 00",
              fBindings.Bytes());
}

TEST_F(BitmapConversion, LongHeaderWidensEveryColourIncludingTheLast) {
    ASSERT_TRUE(Convert(LongFile(2, 1, 4, std::string("\x01\x02\x03\x00\x04\x05\x06\x00", 8), "wxyz")));
    EXPECT_EQ(PixMap("04 80", "01 00", "02 00", "04 00") +
                  " 77 78 79 7A"
                  " 00 00 00 00 00 00 01 00 00 00 00 03 00 02 00 01 01 00 00 06 00 05 00 04",
              fBindings.Bytes());
}

TEST_F(BitmapConversion, RowsThatDoNotDivideTheBlockStopAtItsStart) {
    ASSERT_TRUE(Convert(ShortFile(1, 1, 8, "", "xyAAAABBBB")));
    EXPECT_EQ(PixMap("04 80", "01 00", "01 00", "08 00") + " 42 42 42 42 41 41 41 41 00 00 00 00 00 00 FF FF",
              fBindings.Bytes());
}

TEST_F(BitmapConversion, ARowSizeOfZeroLaysOutNoRows) {
    ASSERT_TRUE(Convert(ShortFile(0, 1, 8, "", "AAAA")));
    EXPECT_EQ(PixMap("00 80", "01 00", "00 00", "08 00") + " 00 00 00 00 00 00 FF FF", fBindings.Bytes());
}

TEST_F(BitmapConversion, RefusesFilesThatAreNotOfTheAcceptedFormOrTooShortForTheirHeader) {
    std::string const good = ShortFile(1, 1, 8, "", "AAAA");
    std::string standardMagic = good;
    standardMagic[0] = 0x42, standardMagic[1] = 0x4D;
    std::string reserved = good;
    reserved[11] = 1;
    std::string const cases[] = {
        "",
        good.substr(0, 21),
        good.substr(0, 29),
        good.substr(0, good.size() - 1),
        standardMagic,
        reserved,
        FileHeader(100, 60, 40) + std::string(40, '\0'),
        // A rows offset in front of the headers makes the palette's size wrap around.
        FileHeader(30, 20, 16) + std::string(8, '\0'),
        // A total size in front of the rows offset makes the rows block's size wrap around.
        FileHeader(10, 32, 16) + std::string(8, '\0'),
        LongFile(1, 1, 8, "", "AAAA").substr(0, 101),
    };
    for (std::string const& file : cases) EXPECT_FALSE(Convert(file)) << testing::PrintToString(file);
}

}  // namespace
