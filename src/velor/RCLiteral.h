// The conversion of literal tokens into values, kept apart from the token loop of RCScanner: the
// members that RCScanner declares under "Conversion of the current literal token" are defined in
// RCLiteral.cpp. A literal is read from its own text up to RCScanner::LiteralLimit, never beyond,
// and a string grows through an RCStringAppender, which may enlarge it as escapes are expanded.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "RCByteString.h"

// Writes behind the text of a string, growing its storage when a literal gives more than was
// planned for. The written bytes become part of the string only at Finish.
class RCStringAppender {
public:
    RCStringAppender(RCByteString& string, long room) : fString(string), fReady(string.Expand(room)), fRoom(room) {}

    // False when not even the planned storage could be had; that was reported.
    bool Ready() const { return fReady; }

    void PutByte(char byte) {
        if (MakeRoom(1)) fString.Bytes()[fString.fLength + fWritten++] = byte;
    }

    // The bytes as PutByte puts them one by one; a run that fits the storage at hand goes at once.
    void PutBytes(char const* bytes, long count) {
        if (fWritten + count > fRoom) {
            for (long i = 0; i < count; ++i) PutByte(bytes[i]);
            return;
        }
        std::memcpy(fString.Bytes() + fString.fLength + fWritten, bytes, static_cast<size_t>(count));
        fWritten += count;
    }

    void PutUnit(std::uint16_t unit) {
        if (!MakeRoom(sizeof unit)) return;
        std::memcpy(fString.Bytes() + fString.fLength + fWritten, &unit, sizeof unit);
        fWritten += sizeof unit;
    }

    // Ends the text with a terminator of `terminatorBytes` zero bytes, which the length leaves out.
    void Finish(long terminatorBytes) {
        for (long i = 0; i < terminatorBytes; ++i) PutByte(0);
        fString.fLength += fWritten - terminatorBytes;
    }

private:
    bool MakeRoom(long bytes) {
        if (fWritten + bytes <= fRoom) return true;
        long const room = std::max(fWritten + bytes, 2 * fRoom);
        if (!fString.Expand(room)) return false;
        fRoom = room;
        return true;
    }

    RCByteString& fString;
    bool fReady;
    long fRoom;
    long fWritten = 0;
};
