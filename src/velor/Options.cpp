// The options record, filled from the command line; only the description switch changes later,
// at the pragma that sets it.

#include "Options.h"

#include <fts.h>

#include <cstring>
#include <initializer_list>

#include "MarkRelease.h"
#include "UniqueNames.h"

Options* gOptions = nullptr;

namespace {

constexpr char sSeparator = '/';
constexpr uint64_t kInitialCount = 20;
constexpr uint64_t kGrowthCount = 10;

char LastCharacter(char const* text) { return text[std::strlen(text) - 1]; }

char* CopyWithSeparator(char const* path) {
    size_t const length = std::strlen(path);
    auto* copy = new (&gPermanentMemory) char[length + 2];
    std::memcpy(copy, path, length);
    copy[length] = sSeparator;
    copy[length + 1] = '\0';
    return copy;
}

}  // namespace

Options::Options() {
    for (Vector* texts : {&fMacroNames, &fMacroBodies, &fDirectories, &fFiles}) texts->IVector(kInitialCount, kGrowthCount);
}

void Options::AddMacro(char const* name, char const* body) {
    AddText(fMacroNames, name);
    AddText(fMacroBodies, body);
}

void Options::AddDirectory(char const* path) {
    if (path == nullptr || path[0] == '\0') return;
    char const last = LastCharacter(path);
    if (last == '*') {
        char* copy = copyString(path);
        for (size_t length = std::strlen(copy); length > 0 && copy[length - 1] == '*'; --length) copy[length - 1] = '\0';
        AddSubDirectories(copy);
        AddText(fDirectories, copy);
    } else if (last != sSeparator) {
        AddText(fDirectories, CopyWithSeparator(path));
    } else {
        AddText(fDirectories, path);
    }
}

void Options::AddDirectories(char const* list) {
    if (list == nullptr || list[0] == '\0') return;
    char* pieces = copyString(list);
    for (char* piece = pieces;;) {
        char* end = std::strchr(piece, ';');
        if (end != nullptr) *end = '\0';
        AddDirectory(piece);
        if (end == nullptr) break;
        piece = end + 1;
    }
}

// The walk's paths live only until fts moves on, so each directory is added as a copy.
void Options::AddSubDirectories(char const* path) {
    char* roots[] = {const_cast<char*>(path), nullptr};
    FTS* walk = fts_open(roots, FTS_LOGICAL, nullptr);
    if (walk == nullptr) return;
    while (FTSENT* entry = fts_read(walk))
        if (entry->fts_info == FTS_D) AddDirectory(copyString(entry->fts_path));
    fts_close(walk);
}
