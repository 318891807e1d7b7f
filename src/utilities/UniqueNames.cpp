// Interned names and the hash tables behind them: a text is saved once and known by its pointer.

#include "UniqueNames.h"

#include <cctype>
#include <cstring>

#include "MarkRelease.h"
#include "Msgs.h"

namespace {

SymNameTable gSavedStrings;
bool gSavedStringsInited = false;

}  // namespace

int hashTableHasher(void const* bytes, long length) {
    auto const* byte = static_cast<unsigned char const*>(bytes);
    long const hashed = length & 255;
    unsigned char hash = 0;
    for (long i = 0; i < hashed; ++i)
        hash = static_cast<unsigned char>(byte[i] + ((hash << 5) | (hash >> 3)));
    return hash | static_cast<int>((length & 3) << 8);
}

void HashTable::IHashTable() {
    for (SymNameTableEntry*& head : fHeads) head = nullptr;
}

void SymNameTable::ISymNameTable(bool copyText, MarkRelease* arena) {
    fArena = arena;
    fCopyText = copyText;
    fTable.IHashTable();
}

SymNameTableEntry* SymNameTable::Find(void const* bytes, long length) {
    for (SymNameTableEntry* entry = *fTable.GetEntry(bytes, length); entry != nullptr; entry = entry->fNext)
        if (entry->fLength == static_cast<uint32_t>(length) && std::memcmp(entry->fText, bytes, length) == 0)
            return entry;
    return nullptr;
}

SymNameTableEntry* SymNameTable::AddEntry(void const* bytes, long length, void* value) {
    long err = 0;
    size_t const textRoom = fCopyText ? static_cast<size_t>(length) + 1 : 0;
    auto* entry = static_cast<SymNameTableEntry*>(fArena->Allocate(sizeof(SymNameTableEntry) + textRoom, &err));
    if (entry == nullptr) return nullptr;
    char const* text = static_cast<char const*>(bytes);
    if (fCopyText) {
        char* copy = reinterpret_cast<char*>(entry + 1);
        std::memcpy(copy, bytes, length);
        copy[length] = '\0';
        text = copy;
    }
    SymNameTableEntry** head = fTable.GetEntry(bytes, length);
    *entry = SymNameTableEntry{*head, text, value, static_cast<uint32_t>(length)};
    *head = entry;
    return entry;
}

void* SymNameTable::Lookup(char const* text) { return Lookup(text, static_cast<long>(std::strlen(text))); }

void* SymNameTable::Lookup(void const* bytes, long length) {
    SymNameTableEntry* entry = Find(bytes, length);
    return entry == nullptr ? nullptr : entry->fValue;
}

void* SymNameTable::Lookup(char const* text, void* value) {
    return Lookup(text, static_cast<long>(std::strlen(text)), value);
}

void* SymNameTable::Lookup(void const* bytes, long length, void* value) {
    if (SymNameTableEntry* entry = Find(bytes, length)) return entry->fValue;
    AddEntry(bytes, length, value);
    return value;
}

void* SymNameTable::Enter(char const* text, void* value) {
    return Enter(text, static_cast<long>(std::strlen(text)), value);
}

void* SymNameTable::Enter(void const* bytes, long length, void* value) {
    AddEntry(bytes, length, value);
    return value;
}

void* SymNameTable::Replace(char const* text, void* value) {
    return Replace(text, static_cast<long>(std::strlen(text)), value);
}

void* SymNameTable::Replace(void const* bytes, long length, void* value) {
    if (SymNameTableEntry* entry = Find(bytes, length))
        entry->fValue = value;
    else
        AddEntry(bytes, length, value);
    return value;
}

bool SymNameTable::ForEachEntry(EntryProc proc, void* parameter, bool markEndOfBucket) const {
    for (int bucket = 0; bucket < fTable.GetCount(); ++bucket) {
        for (SymNameTableEntry const* entry = fTable.GetTable()[bucket]; entry != nullptr; entry = entry->fNext)
            if (!proc(entry->fText, entry->fLength, entry->fValue, parameter)) return false;
        if (markEndOfBucket && !proc(nullptr, 0, nullptr, parameter)) return false;
    }
    return true;
}

// The saved copy is both the text and the value of its entry, so the table holds one copy only.
char* saveString(char const* text) { return saveString(text, static_cast<long>(std::strlen(text))); }

char* saveString(char const* bytes, long length) {
    if (!gSavedStringsInited) {
        gSavedStrings.ISymNameTable(false, &gPermanentMemory);
        gSavedStringsInited = true;
    }
    if (void* saved = gSavedStrings.Lookup(bytes, length)) return static_cast<char*>(saved);
    char* copy = copyString(bytes, length);
    return static_cast<char*>(gSavedStrings.Enter(copy, length, copy));
}

char* copyString(char const* text) { return copyString(text, static_cast<long>(std::strlen(text))); }

char* copyString(char const* bytes, long length) {
    long err = 0;
    auto* copy = static_cast<char*>(gPermanentMemory.Allocate(static_cast<size_t>(length) + 1, &err));
    if (copy == nullptr) Msgs::Display(Msgs::kFatal, static_cast<int>(kMemFullErr));
    std::memcpy(copy, bytes, static_cast<size_t>(length));
    copy[length] = '\0';
    return copy;
}

void lower(char* text) {
    for (; *text != '\0'; ++text) *text = static_cast<char>(std::tolower(static_cast<unsigned char>(*text)));
}

bool ustreql(char const* a, char const* b) {
    if (a == b) return true;
    for (;; ++a, ++b) {
        if (std::tolower(static_cast<unsigned char>(*a)) != std::tolower(static_cast<unsigned char>(*b)))
            return false;
        if (*a == '\0') return true;
    }
}
