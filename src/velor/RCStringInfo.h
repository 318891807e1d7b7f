// RCStringInfo: what one string value puts out in a field of a given string type: the count in
// front, the text, cut to a fixed length if there is one, and the zero bytes behind.
#pragma once

struct RCByteString;

// The layout of a string type, in bytes.
struct RCStringTypeInfo {
    short fCountBytes;
    short fCharBytes;
    short fTerminatorBytes;
};

class RCStringInfo {
public:
    RCStringInfo(RCByteString const& value, int fieldType);
    // A field fixed to length characters, terminator included; the count is not part of them.
    RCStringInfo(RCByteString const& value, int fieldType, long length);

    // The layout of a field keyword's token, or of the type of a literal value.
    static RCStringTypeInfo Info(int stringType);

    void const* GetLeadingBytes() const { return fLeadingBytes; }
    long GetLeadingBytesCount() const { return fFieldInfo.fCountBytes; }
    void const* GetBytes() const { return fText; }
    long GetBytesCount() const { return fByteCount; }
    short GetPaddingCount() const { return fPaddingCount; }
    bool IsTruncated() const { return fIsTruncated; }
    // Field and value agree on the size of a character.
    bool IsCompatible() const { return fFieldInfo.fCharBytes == fValueInfo.fCharBytes; }

    // Stores length characters as the count, in as many low-order bytes as the type's count takes.
    void ComputeLength(long length);

private:
    // The text whole, and the field's terminator as the padding behind it.
    RCStringInfo(RCByteString const& value, RCStringTypeInfo fieldInfo);

    unsigned char fCountBuffer[4];
    unsigned char const* fLeadingBytes;
    long fByteCount;
    void const* fText;
    short fPaddingCount;
    RCStringTypeInfo fFieldInfo;
    RCStringTypeInfo fValueInfo;
    bool fIsTruncated;
};
