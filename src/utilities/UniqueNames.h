// Interned names: equal texts give one pointer, so names compare by pointer.
#pragma once

#include <cstdint>

class MarkRelease;

// A bucket entry. With a copying table the text follows the entry in the same allocation.
struct SymNameTableEntry {
    SymNameTableEntry* fNext;
    char const* fText;
    void* fValue;
    uint32_t fLength;
};

// The hash of a name: 8 bits from the first (length & 255) bytes, with the low two bits of the
// length above them, so 0 to 1023. Long names hash on a prefix only; the buckets chain.
int hashTableHasher(void const* bytes, long length);

class HashTable {
public:
    static constexpr int kBucketCount = 1024;

    void IHashTable();
    SymNameTableEntry** GetTable() { return fHeads; }
    SymNameTableEntry* const* GetTable() const { return fHeads; }
    int GetCount() const { return kBucketCount; }
    SymNameTableEntry** GetEntry(void const* bytes, long length) {
        return &fHeads[hashTableHasher(bytes, length)];
    }

private:
    SymNameTableEntry* fHeads[kBucketCount] = {};
};

// Chained hash table from texts (compared byte for byte, case counts) to untyped values, with its
// entries in an arena. A copying table keeps its own copy of each text; otherwise the caller's
// bytes must outlive the table.
class SymNameTable {
public:
    // Called per entry; returning false stops the walk. At the end of a bucket, when asked for,
    // it is called with a null text.
    using EntryProc = bool (*)(char const* text, long length, void* value, void* parameter);

    void ISymNameTable(bool copyText, MarkRelease* arena);

    // The value of the entry, or null.
    void* Lookup(char const* text);
    void* Lookup(void const* bytes, long length);
    // The value of an existing entry; else an entry with this value is added.
    void* Lookup(char const* text, void* value);
    void* Lookup(void const* bytes, long length, void* value);
    // Adds an entry in front of any with the same text, without searching; returns the value.
    void* Enter(char const* text, void* value);
    void* Enter(void const* bytes, long length, void* value);
    // Sets the value of an existing entry, else adds one; returns the value.
    void* Replace(char const* text, void* value);
    void* Replace(void const* bytes, long length, void* value);

    bool ForEachEntry(EntryProc proc, void* parameter, bool markEndOfBucket) const;

private:
    SymNameTableEntry* Find(void const* bytes, long length);
    SymNameTableEntry* AddEntry(void const* bytes, long length, void* value);

    MarkRelease* fArena = nullptr;
    bool fCopyText = false;
    HashTable fTable;
};

// An interned name: the pointer to its one saved text. Two names are equal when the pointers are.
struct UniqueStruct;

// Interns a text: equal texts give the same pointer for the life of the process. The length form
// interns bytes that need not end in a NUL, such as a token inside the source text.
char* saveString(char const* text);
char* saveString(char const* bytes, long length);
inline UniqueStruct* uniqueOf(char const* text) { return reinterpret_cast<UniqueStruct*>(saveString(text)); }
inline UniqueStruct* uniqueOf(char const* bytes, long length) {
    return reinterpret_cast<UniqueStruct*>(saveString(bytes, length));
}
inline char const* nameOf(UniqueStruct const* unique) { return reinterpret_cast<char const*>(unique); }

// A NUL-terminated copy in the permanent arena; running out of memory is fatal.
char* copyString(char const* text);
char* copyString(char const* bytes, long length);
// Lower-cases a text in place.
void lower(char* text);
// Equality without regard to case.
bool ustreql(char const* a, char const* b);
