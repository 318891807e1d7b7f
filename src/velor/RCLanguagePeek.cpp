// A look ahead at the first words of a value list, without moving the scanner.

#include "RCLanguagePeek.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "PPCharClass.h"

namespace {

constexpr char kTagPrefix[] = "k_";
constexpr char kUtf8EncodedWord[] = "kResourceUTF8Encoded";
constexpr int kFirstUtf8Language = 5;
constexpr int kOtherUtf8Language = 6;

// Languages by their tags, numbered from 1 in this order.
constexpr char const* kLanguageTags[] = {"k_jaJP", "k_zhCN", "k_zhTW", "k_koKR"};
constexpr std::size_t kTagLength = 6;

constexpr std::uint64_t kEachByte = ~std::uint64_t{0} / 0xFF;

// The top bit of each of the eight bytes that is a letter, found as isAsciiLetter does: fold the case,
// then test 'a' <= byte <= 'z' on the low seven bits of a byte whose own top bit is clear. Each sum
// and difference stays within its byte, so no byte's result spills into its neighbour's.
std::uint64_t LetterFlags(std::uint64_t bytes) {
    std::uint64_t const folded = bytes | kEachByte * 0x20;
    std::uint64_t const low = folded & kEachByte * 0x7F;
    std::uint64_t const upToZ = kEachByte * (0x7F + 'z' + 1) - low;
    std::uint64_t const fromA = low + kEachByte * (0x7F - ('a' - 1));
    return upToZ & fromA & ~folded & kEachByte * 0x80;
}

// The index, in memory order, of the first byte whose flag is set.
int FirstFlaggedByte(std::uint64_t flags) {
    if constexpr (std::endian::native == std::endian::little)
        return std::countr_zero(flags) / 8;
    else
        return std::countl_zero(flags) / 8;
}

// Resources open with a run of blanks, digits and punctuation before their first word, so the
// run is skipped eight bytes at a time.
char const* SkipToLetter(char const* p, char const* end) {
    for (; end - p >= 8; p += 8) {
        std::uint64_t bytes;
        std::memcpy(&bytes, p, sizeof bytes);
        if (std::uint64_t const flags = LetterFlags(bytes)) return p + FirstFlaggedByte(flags);
    }
    while (p < end && !isAsciiLetter(static_cast<unsigned char>(*p))) ++p;
    return p;
}

char const* SkipToLineEnd(char const* p, char const* end) {
    while (p < end && *p != '\r' && *p != '\n') ++p;
    return p;
}

bool StartsWith(char const* p, char const* end, char const* text, std::size_t length) {
    return static_cast<std::size_t>(end - p) >= length && std::memcmp(p, text, length) == 0;
}

int LanguageOfTag(char const* p, char const* end) {
    for (int index = 0; index < static_cast<int>(std::size(kLanguageTags)); ++index)
        if (StartsWith(p, end, kLanguageTags[index], kTagLength)) return index + 1;
    return 0;
}

}  // namespace

RCLanguagePeek PeekLanguage(char const* begin, char const* end) {
    char const* word = SkipToLetter(begin, end);
    // Every language tag starts with the prefix, so a word without it is no tag.
    if (!StartsWith(word, end, kTagPrefix, std::strlen(kTagPrefix))) return RCLanguagePeek{0, false};
    RCLanguagePeek peek{LanguageOfTag(word, end), false};

    char const* nextLine = SkipToLetter(SkipToLineEnd(word, end), end);
    if (StartsWith(nextLine, end, kUtf8EncodedWord, std::strlen(kUtf8EncodedWord)))
        peek.language = peek.language != 0 ? kFirstUtf8Language : kOtherUtf8Language;
    else
        peek.encodingWordMissing = true;
    return peek;
}
