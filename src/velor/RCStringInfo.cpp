// The layout of one string in a field: count, text, padding and terminator, decided before any byte is laid.

#include "RCStringInfo.h"

#include "Assertion.h"
#include "RCByteString.h"
#include "RCNumber.h"
#include "RCScanner.h"

namespace {

constexpr RCStringTypeInfo kNarrowText = {0, 1, 0};
constexpr RCStringTypeInfo kWideText = {0, 2, 0};

} // namespace

RCStringTypeInfo RCStringInfo::Info(int stringType) {
    switch (stringType) {
    case kRCScan_Char:
    case kRCScan_String:
    case kPPScan_String:
    case kPPScan_DBString:
    case kPPScan_DBHexString:
        return kNarrowText;
    case kRCScan_Istring:
    case kPPScan_WideString:
    case kPPScan_WideHexString:
        return kWideText;
    case kRCScan_Cstring:
        return {0, 1, 1};
    case kRCScan_Pstring:
        return {1, 1, 0};
    case kRCScan_Wstring:
        return {2, 1, 0};
    case kRCScan_Icstring:
        return {0, 2, 2};
    case kRCScan_Ipstring:
        return {2, 2, 0};
    case kRCScan_Iwstring:
        return {4, 2, 0};
    default:
        VELOR_ASSERT(false);
        return kNarrowText;
    }
}

RCStringInfo::RCStringInfo(RCByteString const& value, RCStringTypeInfo fieldInfo)
    : fCountBuffer{},
      fLeadingBytes(nullptr),
      fByteCount(value.fLength),
      fText(value.fData),
      fPaddingCount(fieldInfo.fTerminatorBytes),
      fFieldInfo(fieldInfo),
      fValueInfo(Info(value.fStringType)),
      fIsTruncated(false) {}

RCStringInfo::RCStringInfo(RCByteString const& value, int fieldType) : RCStringInfo(value, Info(fieldType)) {
    // Only a char field without a length cuts its text; the parser always gives char a length.
    if (fieldType == kRCScan_Char && fByteCount > fFieldInfo.fCharBytes) {
        fByteCount = fFieldInfo.fCharBytes;
        fIsTruncated = true;
    }
    ComputeLength(fByteCount / fFieldInfo.fCharBytes);
}

RCStringInfo::RCStringInfo(RCByteString const& value, int fieldType, long length)
    : RCStringInfo(value, Info(fieldType)) {
    // The arithmetic wraps: a length from a description file is not bounded.
    long room = WrappingSubtract(WrappingMultiply(length, fFieldInfo.fCharBytes), fFieldInfo.fTerminatorBytes);
    if (fByteCount > room) {
        fByteCount = room;
        fIsTruncated = true;
    } else {
        fPaddingCount = static_cast<short>(WrappingAdd(fPaddingCount, WrappingSubtract(room, fByteCount)));
    }
    ComputeLength(fByteCount / fFieldInfo.fCharBytes);
}

void RCStringInfo::ComputeLength(long length) {
    int countBytes = fFieldInfo.fCountBytes;
    fLeadingBytes = countBytes == 0 ? nullptr : fCountBuffer;
    for (int i = 0; i < countBytes; ++i)
        fCountBuffer[i] = static_cast<unsigned char>(static_cast<unsigned long>(length) >> (8 * i));
}
