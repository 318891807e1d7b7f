// The string value of the resource language, a plain value released by an explicit Destroy.
#pragma once

#include <utility>

// A string value of the resource language: bytes, their count and the token number that says
// how they were written. It is a plain value that owns nothing by itself: whoever holds the last
// copy calls Destroy. Storage always keeps two zero bytes of room behind the text once the
// scanner has filled it, so narrow and wide strings alike can be read as terminated.
struct RCByteString {
    // The string type of a value that has no text yet; the first literal merged into it decides
    // between narrow and wide.
    static constexpr int kEmptyType = 1;

    void* fData = nullptr;
    long fLength = 0;
    int fStringType = kEmptyType;
    // Bytes the storage holds. Most strings are a few bytes and live for one field, so their
    // storage comes from the small-block free lists, which need the size given back.
    long fCapacity = 0;

    // Grows the storage so that `size` more bytes fit behind the current length. Reports
    // "Out of memory." and returns false if the storage cannot grow; the string is unchanged then.
    bool Expand(long size);

    // A copy with storage of its own, terminated like the original. A failed allocation is
    // reported and gives an empty copy.
    RCByteString Clone() const;

    // Gives the storage back and leaves an empty string of the same type.
    void Destroy();

    char* Bytes() const { return static_cast<char*>(fData); }
};

// Holds a local string and destroys it when the scope ends, on every way out: when messages
// throw, a fatal one unwinds through the parser. Release hands the string on instead.
class RCByteStringOwner {
public:
    RCByteStringOwner() = default;
    explicit RCByteStringOwner(RCByteString string) : fString(string) {}
    RCByteStringOwner(RCByteStringOwner const&) = delete;
    RCByteStringOwner& operator=(RCByteStringOwner const&) = delete;
    ~RCByteStringOwner() { fString.Destroy(); }

    RCByteString& Get() { return fString; }
    RCByteString const& Get() const { return fString; }
    RCByteString Release() { return std::exchange(fString, RCByteString{}); }

private:
    RCByteString fString;
};
