// Bit packing, frames and the $$ functions of one resource instance.

#include "RCBindings.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "Assertion.h"
#include "MsgIds.h"
#include "Msgs.h"
#include "RCBindings_Def.h"
#include "RCExpression.h"
#include "RCScanner.h"
#include "RCStringInfo.h"
#include "UniqueNames.h"

namespace {

constexpr int kBitsPerByte = 8;
constexpr int kValueBits = 64;
constexpr short kMaxIntegerWidth = 32;
constexpr short kSingleWidth = 32;

// The kMsg_LabelDefinedTwice message has the quirk of passing its own text as the argument of its %s.
constexpr char kLabelDefinedTwiceText[] = "Label '%s' previously defined.\n";

// Shifts that reach past the 64 bits of a value give zero rather than undefined behaviour, so a
// field wider than a value reads as zeros above it.
unsigned long shiftRight(unsigned long value, long shift) {
    return shift >= kValueBits ? 0 : value >> shift;
}

unsigned long shiftLeft(unsigned long value, long shift) {
    return shift >= kValueBits ? 0 : value << shift;
}

// Takes the top bitsRequired bits of the width-bit field held in value, clears them there and
// narrows the field accordingly.
unsigned char extractMSBits(unsigned long& value, short& width, short bitsRequired) {
    VELOR_ASSERT_TEXT("bitsRequired <= aWidth", bitsRequired <= width);
    short shift = static_cast<short>(width - bitsRequired);
    unsigned long mask = ((1UL << bitsRequired) - 1) & 0xFF;
    unsigned char bits = static_cast<unsigned char>(shiftRight(value, shift) & mask);
    value &= ~shiftLeft(mask, shift);
    width = shift;
    return bits;
}

// The part of a most-significant-bit-first field that falls into one byte: count bits, placed
// below room free bits of the byte.
struct BitPiece {
    long byteIndex;
    int room;
    short count;

    int Shift() const { return room - count; }
    unsigned char Mask() const { return static_cast<unsigned char>(((1U << count) - 1) << Shift()); }
};

template <class Visit>
void forEachPiece(long bitPosition, short width, Visit visit) {
    // Every piece after the first starts on a byte boundary. Counting bytes rather than bits keeps
    // a read near the largest position from overflowing.
    long byteIndex = bitPosition / kBitsPerByte;
    int room = kBitsPerByte - static_cast<int>(bitPosition % kBitsPerByte);
    while (width > 0) {
        short count = static_cast<short>(std::min<int>(width, room));
        visit(BitPiece{byteIndex++, room, count});
        width = static_cast<short>(width - count);
        room = kBitsPerByte;
    }
}

bool isWholeBytes(long bitPosition, short width) {
    return width % kBitsPerByte == 0 && bitPosition % kBitsPerByte == 0;
}

// Bytes of the output that a patch or a read may touch; those outside count as zero and stay so.
class ByteWindow {
public:
    ByteWindow(unsigned char* data, long size) : fData(data), fSize(size) {}

    unsigned char At(long index) const { return Contains(index) ? fData[index] : 0; }
    void Put(long index, unsigned char byte) {
        if (Contains(index)) fData[index] = byte;
    }

private:
    bool Contains(long index) const { return index >= 0 && index < fSize; }

    unsigned char* fData;
    long fSize;
};

ByteWindow windowOver(DataArea& area) {
    long size = static_cast<long>(area.GetSize());
    return ByteWindow(size == 0 ? nullptr : reinterpret_cast<unsigned char*>(area.GetData(0)), size);
}

// Narrows as IEEE rounding to nearest does, while the cast itself stays within the range of
// float: a double less than half a unit in the last place above the largest float becomes that
// float, and from there on the infinity of its sign.
float narrowToFloat(double value) {
    constexpr double kRoundsToInfinity = 0x1.ffffffp127;
    double magnitude = std::fabs(value);
    if (std::isnan(value) || magnitude <= FLT_MAX) return static_cast<float>(value);
    float beyond = magnitude >= kRoundsToInfinity ? std::numeric_limits<float>::infinity() : FLT_MAX;
    return value < 0 ? -beyond : beyond;
}

// The bytes of a float field, little-endian; the count is 4 for width 32 and 8 for any other.
int floatBytes(double value, short width, unsigned char* bytes) {
    std::uint64_t bits = width == kSingleWidth ? std::bit_cast<std::uint32_t>(narrowToFloat(value))
                                               : std::bit_cast<std::uint64_t>(value);
    int count = width == kSingleWidth ? 4 : 8;
    for (int i = 0; i < count; ++i) bytes[i] = static_cast<unsigned char>(bits >> (kBitsPerByte * i));
    return count;
}

// Byte i of a value, counting from the low-order end; bytes past the value's own eight are zero.
unsigned char lowOrderByte(unsigned long value, int i) {
    return static_cast<unsigned char>(shiftRight(value, static_cast<long>(kBitsPerByte) * i));
}

long signExtend(unsigned long value, int bits) {
    int unused = kValueBits - bits;
    return static_cast<long>(value << unused) >> unused;
}

long readWholeBytes(ByteWindow const& bytes, long byteIndex, short width) {
    switch (width) {
    case 8:
    case 16:
    case 24:
    case 32: {
        unsigned long value = 0;
        for (int i = 0; i < width / kBitsPerByte; ++i)
            value |= static_cast<unsigned long>(bytes.At(byteIndex + i)) << (kBitsPerByte * i);
        return signExtend(value, width);
    }
    default:
        return 0;
    }
}

long readBits(ByteWindow const& bytes, long bitPosition, short width) {
    unsigned long result = 0;
    forEachPiece(bitPosition, width, [&](BitPiece piece) {
        unsigned long bits = (bytes.At(piece.byteIndex) >> piece.Shift()) & ((1U << piece.count) - 1);
        result = shiftLeft(result, piece.count) | bits;
    });
    return static_cast<long>(result);
}

long readValue(ByteWindow const& bytes, long bitPosition, short width) {
    if (bitPosition < 0) return 0;
    if (isWholeBytes(bitPosition, width)) return readWholeBytes(bytes, bitPosition / kBitsPerByte, width);
    return readBits(bytes, bitPosition, width);
}

void evalArgv(RCScanner* scanner, RCBindings* bindings, int argc, RCExpression** argv, long* values) {
    VELOR_ASSERT(argc <= kArgMax);
    for (int i = 0; i < argc; ++i) values[i] = argv[i]->Evaluate(scanner, bindings).AsInteger();
}

// The value of the expression of a set, auto or static statement, which must be known at once.
RCNumber eval(RCScanner* scanner, RCBindings* bindings, UniqueStruct* name, RCExpression* expression) {
    bool isConstant = false;
    RCPtr<RCExpression> reduced = expression->Reduce(scanner, bindings, isConstant);
    if (isConstant) return reduced->Evaluate(scanner, bindings);
    VELOR_ASSERT_TEXT("aScanner != 0", scanner != nullptr);
    scanner->Error(kMsg_CannotEvaluateAssignment, 1, nameOf(name));
    return RCNumber();
}

// Output areas are recycled: the area of a finished resource, emptied, serves the next one. Every
// resource statement needs an area and most fill a few bytes of it, so this saves a block and its
// master pointer per resource. An area grown past kLargestSpareArea goes with its resource, so
// that no large block outlives it.
constexpr std::uint64_t kLargestSpareArea = 128 * 1024;

DataArea& spareOutputArea() {
    static DataArea spare;
    return spare;
}

// Output that cannot grow ends the run, as an exhausted heap does elsewhere. The explicit exit
// covers a message mask that hides the fatal message, which then would not end the run itself.
void outOfMemory() {
    Msgs::Display(Msgs::kFatal, kMsg_OutOfMemory);
    Msgs::Exit(1);
}

} // namespace

unsigned long RCBindings::fgMaxResourceBytes = 256UL << 20;

RCBindings::RCBindings(RCSymbolTable* symbolTable, RCResourceFile* resourceFile, unsigned long resType,
                       unsigned long resID)
    : fResourceFile(resourceFile),
      fResType(resType),
      fResID(resID),
      fDef(nullptr),
      fSymbolTable(symbolTable),
      fBit(0),
      fDescriptionIndent(0) {
    if (spareOutputArea().HasBlock()) {
        fData.Swap(spareOutputArea());
        return;
    }
    // A small start, as most resources are a few bytes; a large growth step, as a resource may
    // hold a whole file.
    fData.IDataArea(256, 65536, false);
    VELOR_ASSERT(fData.HasBlock());
}

RCBindings::RCBindings(RCSymbolTable* symbolTable)
    : fResourceFile(nullptr), fResType(0), fResID(0), fDef(nullptr), fSymbolTable(symbolTable), fBit(0),
      fDescriptionIndent(0) {}

RCBindings::~RCBindings() {
    while (fDef != nullptr) {
        RCBindings_Def* parent = fDef->Parent();
        delete fDef;
        fDef = parent;
    }
    if (fData.HasBlock() && fData.GetAllocated() <= kLargestSpareArea) {
        fData.Reset();
        fData.Swap(spareOutputArea());
    }
}

void RCBindings::PushDefn(RCDefinition* definition) {
    fDef = new RCBindings_Def(this, definition, fSymbolTable, fDef);
}

void RCBindings::PopDefn(RCScanner* scanner) {
    RCBindings_Def* frame = RequireDefn();
    frame->ApplyFixups(scanner);
    fDef = frame->Parent();
    delete frame;
}

RCBindings_Def* RCBindings::RequireDefn() const {
    VELOR_ASSERT_TEXT("fDef != 0", fDef != nullptr);
    return fDef;
}

void* RCBindings::ResourceData() {
    fData.MacHLock();
    return fData.GetData(0);
}

long RCBindings::ResourceSize() const {
    return static_cast<long>(fData.GetSize());
}

bool RCBindings::AddOtherValue(RCScanner* scanner, RCNumber const& number, short width, bool isInteger) {
    RequireDefn();
    if (isInteger && (width < 0 || width > kMaxIntegerWidth)) {
        scanner->Error(kMsg_BadWidth, 1, static_cast<int>(width));
        return false;
    }
    if (width == 0) return true;
    if (!isInteger) return AddFloat(scanner, number.AsDouble(), width);
    RequireRoom(static_cast<unsigned long>(width));
    unsigned long value = static_cast<unsigned long>(number.AsInteger());
    if (isWholeBytes(fBit, width))
        AddWholeBytes(value, width);
    else
        AddBits(value, width);
    return true;
}

bool RCBindings::AddFloat(RCScanner* scanner, double value, short width) {
    if (fBit % kBitsPerByte != 0) {
        scanner->Error(kMsg_FloatNotAligned, 0);
        return false;
    }
    unsigned char bytes[8];
    return AddBytes(scanner, bytes, floatBytes(value, width, bytes));
}

void RCBindings::RequireRoom(unsigned long bitCount) const {
    unsigned long const limit = fgMaxResourceBytes * kBitsPerByte;
    unsigned long const used = static_cast<unsigned long>(fBit);
    if (used > limit || bitCount > limit - used) outOfMemory();
}

void RCBindings::AddWholeBytes(unsigned long value, short width) {
    unsigned char* bytes = fData.Advance(static_cast<uint64_t>(width / kBitsPerByte));
    if (bytes == nullptr) outOfMemory();
    StoreLowOrderFirst(bytes, value, width);
    fBit += width;
}

// The field, at most kMaxIntegerWidth bits, is placed in one word right below the bits already
// taken in the last byte. The word's bytes, most significant first, go into the free low bits of
// that partly filled byte, if there is one, and then into new bytes.
void RCBindings::AddBits(unsigned long value, short width) {
    int const taken = static_cast<int>(fBit % kBitsPerByte);
    int const totalBits = taken + width;
    int const wordBytes = (totalBits + kBitsPerByte - 1) / kBitsPerByte;
    int const newBytes = wordBytes - (taken != 0 ? 1 : 0);
    unsigned char* bytes = fData.Advance(static_cast<uint64_t>(newBytes));
    if (bytes == nullptr) outOfMemory();
    unsigned long const word = (value & ((1UL << width) - 1)) << (wordBytes * kBitsPerByte - totalBits);
    if (taken != 0) bytes[-1] |= lowOrderByte(word, newBytes);
    for (int i = 0; i < newBytes; ++i) bytes[i] = lowOrderByte(word, newBytes - 1 - i);
    fBit += width;
}

bool RCBindings::AddValue(RCScanner* scanner, RCExpression* expression, short width, bool isInteger) {
    RequireDefn();
    // A literal, the most common value, is its own reduced form.
    if (RCNumber const* literal = expression->LiteralValue()) return AddValue(scanner, *literal, width, isInteger);
    bool isConstant = false;
    RCPtr<RCExpression> reduced = expression->Reduce(scanner, this, isConstant);
    if (isConstant) return AddValue(scanner, reduced->Evaluate(scanner, this), width, isInteger);
    return AddDeferred(scanner, reduced.Release(), true, width, isInteger);
}

bool RCBindings::AddOutputValue(RCScanner* scanner, RCExpression* expression, short width, bool isInteger) {
    return AddDeferred(scanner, expression, false, width, isInteger);
}

bool RCBindings::AddDeferred(RCScanner* scanner, RCExpression* expression, bool owned, short width, bool isInteger) {
    // The field keeps its place as zero bits until the frame is popped.
    RequireDefn()->AddFixup(expression, owned, fBit, width, isInteger);
    return AddValue(scanner, RCNumber(0L), width, isInteger);
}

bool RCBindings::AddBytes(RCScanner* scanner, void const* bytes, long count) {
    // A negative count comes only from a fixed string with no room at all; it writes nothing.
    if (count <= 0) return true;
    Align(scanner, kBitsPerByte);
    RequireRoom(static_cast<unsigned long>(count) * kBitsPerByte);
    unsigned char* at = fData.Advance(static_cast<std::uint64_t>(count));
    if (at == nullptr) outOfMemory();
    std::memcpy(at, bytes, static_cast<std::size_t>(count));
    fBit += count * kBitsPerByte;
    return true;
}

bool RCBindings::AddString(RCScanner* scanner, RCByteString const& string, int stringType) {
    RCStringInfo info(string, stringType);
    return AddString(scanner, info);
}

bool RCBindings::AddString(RCScanner* scanner, RCByteString const& string, int stringType, long length) {
    RCStringInfo info(string, stringType, length);
    return AddString(scanner, info);
}

bool RCBindings::AddString(RCScanner* scanner, RCStringInfo const& info) {
    if (!info.IsCompatible()) {
        scanner->Error(kMsg_StringsNotCompatible, 0);
        return false;
    }
    AddBytes(scanner, info.GetLeadingBytes(), info.GetLeadingBytesCount());
    AddBytes(scanner, info.GetBytes(), info.GetBytesCount());
    for (short i = 0; i < info.GetPaddingCount(); ++i) AddValue(scanner, RCNumber(0L), kBitsPerByte, true);
    if (info.IsTruncated()) scanner->Warning(kMsg_StringTruncated, 1, info.GetBytesCount());
    return true;
}

bool RCBindings::Align(RCScanner* scanner, short width) {
    // Callers align to a size of at least one bit; the test keeps the remainder defined.
    if (width <= 0) return true;
    long pad = width - fBit % width;
    if (pad == width) return true;
    return AddValue(scanner, RCNumber(0L), static_cast<short>(pad), true);
}

bool RCBindings::Fill(RCScanner* scanner, short width, long count, unsigned long value) {
    RCNumber number(static_cast<long>(value));
    // The whole fill is measured first, so that an absurd count ends the run before the loop.
    if (count > 0 && width > 0) {
        unsigned long const units = static_cast<unsigned long>(count);
        unsigned long const unitBits = static_cast<unsigned long>(width);
        if (units > std::numeric_limits<unsigned long>::max() / unitBits) outOfMemory();
        RequireRoom(units * unitBits);
    }
    bool added = true;
    for (long i = 0; i < count; ++i) added = AddValue(scanner, number, width, true) && added;
    return added;
}

void RCBindings::PutValue(long bitPosition, short width, RCNumber const& number, bool isInteger) {
    PutValue(fData, bitPosition, width, number, isInteger);
}

void RCBindings::PutValue(DataArea& area, long bitPosition, short width, RCNumber const& number, bool isInteger) {
    if (bitPosition < 0) return;
    ByteWindow bytes = windowOver(area);
    long byteIndex = bitPosition / kBitsPerByte;
    if (!isInteger) {
        // A float is patched only where it could have been laid: on a byte boundary.
        if (bitPosition % kBitsPerByte != 0) return;
        unsigned char floatData[8];
        int count = floatBytes(number.AsDouble(), width, floatData);
        for (int i = 0; i < count; ++i) bytes.Put(byteIndex + i, floatData[i]);
        return;
    }
    unsigned long value = static_cast<unsigned long>(number.AsInteger());
    if (isWholeBytes(bitPosition, width)) {
        for (int i = 0; i < width / kBitsPerByte; ++i) bytes.Put(byteIndex + i, lowOrderByte(value, i));
        return;
    }
    short remaining = width;
    forEachPiece(bitPosition, width, [&](BitPiece piece) {
        unsigned char bits = static_cast<unsigned char>(extractMSBits(value, remaining, piece.count) << piece.Shift());
        unsigned char kept = bytes.At(piece.byteIndex) & static_cast<unsigned char>(~piece.Mask());
        bytes.Put(piece.byteIndex, kept | bits);
    });
}

long RCBindings::GetValue(long bitPosition, short width) {
    return readValue(windowOver(fData), bitPosition, width);
}

long RCBindings::GetValue(void const* data, long bitPosition, short width) {
    ByteWindow bytes(static_cast<unsigned char*>(const_cast<void*>(data)), std::numeric_limits<long>::max());
    return readValue(bytes, bitPosition, width);
}

RCValueCell* RCBindings::LookupValue(UniqueStruct* name) {
    if (fDef == nullptr) return nullptr;
    if (RCValueCell* cell = fDef->LookupLabel(name)) return cell;
    if (RCValueCell* cell = fDef->LookupAuto(name)) return cell;
    if (RCValueCell* cell = fDef->LookupStatic(name)) return cell;
    return fDef->LookupUnknown(name);
}

void RCBindings::AssignValue(RCScanner* scanner, UniqueStruct* name, RCExpression* expression) {
    RCBindings_Def* frame = RequireDefn();
    RCValueCell* cell = frame->LookupAuto(name);
    if (cell == nullptr) cell = frame->LookupStatic(name);
    if (cell == nullptr) {
        scanner->Error(kMsg_NotAutoOrStatic, 1, nameOf(name));
        return;
    }
    cell->SetValue(eval(scanner, this, name, expression));
}

void RCBindings::AssignValue_Auto(RCScanner* scanner, UniqueStruct* name, RCExpression* expression) {
    RCBindings_Def* frame = RequireDefn();
    RCValueCell* cell = frame->LookupAuto(name);
    if (cell == nullptr) {
        cell = frame->NewValueCell(name);
        cell->SetDefined();
        frame->AssignAuto(cell);
    }
    cell->SetValue(eval(scanner, this, name, expression));
}

RCValueCell* RCBindings::AssignValue_Label(RCScanner* scanner, UniqueStruct* name) {
    RCBindings_Def* frame = RequireDefn();
    if (RCValueCell* existing = frame->LookupLabel(name)) {
        scanner->Error(kMsg_LabelDefinedTwice, 2, kLabelDefinedTwiceText, nameOf(name));
        return existing;
    }
    RCValueCell* cell = frame->LookupUnknown(name);
    cell->SetDefined();
    cell->SetValue(RCNumber(fBit));
    frame->AssignLabel(scanner, cell);
    return cell;
}

void RCBindings::AssignToClassParameter(UniqueStruct* name, long value) {
    RequireDefn()->AssignToClassParameter(name, value);
}

void RCBindings::AssignToClassParameter(UniqueStruct* name, RCExpression* expression) {
    RCBindings_Def* frame = RequireDefn();
    frame->AssignToClassParameter(name, eval(nullptr, this, name, expression).AsInteger());
}

RCArray* RCBindings::Array(UniqueStruct* name) {
    return RequireDefn()->LookupArray(name, true);
}

long RCBindings::ArrayIndex(RCScanner* scanner, UniqueStruct* name) {
    return RequireDefn()->ArrayIndex(scanner, name);
}

RCArrayLabel* RCBindings::ArrayLabel(UniqueStruct* name) {
    return RequireDefn()->LookupArrayLabel(name);
}

long RCBindings::ArrayRef(RCScanner* scanner, UniqueStruct* name, RCArrayLabel* arrayLabel, int argc,
                          RCExpression** argv) {
    RequireDefn();
    long subscripts[kArgMax];
    evalArgv(scanner, this, argc, argv, subscripts);
    return arrayLabel->Lookup(scanner, name, argc, subscripts);
}

long RCBindings::Apply(RCScanner* scanner, int function, int argc, RCExpression** argv) {
    if (function == kFunction_ArrayIndex) {
        VELOR_ASSERT(argv[0]->IsName());
        return RequireDefn()->ArrayIndex(nullptr, argv[0]->AsName());
    }
    long args[kArgMax];
    evalArgv(scanner, this, argc, argv, args);
    switch (function) {
    case kFunction_BitField:
        return GetValue(WrappingAdd(args[0], args[1]), static_cast<short>(args[2]));
    case kFunction_Byte:
        return GetValue(args[0], 8);
    case kFunction_Long:
        return GetValue(args[0], 32);
    case kFunction_Word:
        return GetValue(args[0], 16);
    default:
        VELOR_ASSERT_TEXT("RCBindings::Apply", false);
        return 0;
    }
}
