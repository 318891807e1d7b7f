// Converting a bitmap file: the time per row should stay flat as the picture grows.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "PPMacTbl.h"
#include "PPMemMgr.h"
#include "RCBindings.h"
#include "RCBitmapFile.h"
#include "RCScanner.h"
#include "RCSymTbl.h"

namespace {

using Clock = std::chrono::steady_clock;

void AppendSizeField(std::string& file, std::uint64_t value) {
    for (int shift : {24, 16, 8, 0, 32, 40, 48, 56}) file += static_cast<char>(value >> shift);
}

// A bitmap with the short header, 8 bits deep and 1024 pixels wide, with a palette of 256 colours.
std::string BitmapFile(long rows) {
    constexpr std::uint64_t kRowBytes = 1024, kPalette = 256 * 3, kBitsOffset = 32 + kPalette;
    std::string file("\x4D\x42", 2);
    AppendSizeField(file, kBitsOffset + kRowBytes * static_cast<std::uint64_t>(rows));
    file.append(4, '\0');
    AppendSizeField(file, kBitsOffset);
    AppendSizeField(file, 16);
    char const info[] = {0x04, 0x00, 0x7F, 0x7F, 0x00, 0x01, 0x00, 0x08};  // width, height, planes, depth
    file.append(info, sizeof info);
    file.append(kPalette + kRowBytes * static_cast<std::uint64_t>(rows), '\x55');
    return file;
}

double NanosecondsPerRow(long rows) {
    std::string const file = BitmapFile(rows);
    PP_CMemoryManager_Basic memory;
    PP_CMacroTable_Basic macros(&memory);
    RCSymbolTable symbols;
    RCScanner scanner(&memory, &macros, &symbols);
    RCBindings bindings(&symbols, nullptr, 0, 0);
    auto start = Clock::now();
    if (!ConvertBitmapFile(PP_CTextReader(file.data(), file.size()), &bindings, &scanner)) std::abort();
    std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
    return elapsed.count() / static_cast<double>(rows);
}

}  // namespace

int main() {
    for (long rows : {100L, 1000L, 10000L})
        std::printf("%6ld rows: %8.1f ns per bitmap row of 1024 bytes\n", rows, NanosecondsPerRow(rows));
    return 0;
}
