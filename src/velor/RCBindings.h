// RCBindings: the binding of one resource instance to its type. It owns the growing output, the
// cursor that counts it in bits, and the stack of frames, one for each type instance being filled.
//
// All bit packing lives here. A field of whole bytes that starts on a byte boundary is stored
// low-order byte first; every other field is stored most-significant bit first, filling each byte
// from its high end. The asymmetry is part of the output format. Floats are whole bytes,
// little-endian: IEEE single for width 32, double for any other width.
#pragma once

#include "DataArea.h"
#include "RCNumber.h"

class RCArray;
class RCArrayLabel;
class RCBindings_Def;
class RCDefinition;
class RCExpression;
class RCResourceFile;
class RCScanner;
class RCStringInfo;
class RCSymbolTable;
class RCValueCell;
struct RCByteString;
struct UniqueStruct;

class RCBindings {
public:
    RCBindings(RCSymbolTable* symbolTable, RCResourceFile* resourceFile, unsigned long resType, unsigned long resID);
    // Scratch bindings, for values that must be known at once: they never get a frame, so they
    // never lay output, and no output area is allocated for them.
    explicit RCBindings(RCSymbolTable* symbolTable);
    ~RCBindings();

    RCBindings(RCBindings const&) = delete;
    RCBindings& operator=(RCBindings const&) = delete;

    // Frames. Statements open and close them through RCBindDefinition; popping runs the fixups.
    void PushDefn(RCDefinition* definition);
    void PopDefn(RCScanner* scanner);
    // The innermost frame, or null outside every type instance.
    RCBindings_Def* CurrentDefn() const { return fDef; }
    RCSymbolTable* GetSymbolTable() const { return fSymbolTable; }

    // The finished bytes; the area stays locked from then on.
    void* ResourceData();
    long ResourceSize() const;
    long GetResourceBit() const { return fBit; }

    DataArea* GetDescriptionArea() { return &fDescription; }
    int GetDescriptionIndent() const { return fDescriptionIndent; }
    int IncrementDescriptionIndent(int delta) { return fDescriptionIndent += delta; }

    // Output at the cursor. Each returns false when a message stopped it, leaving the output as it was.
    // An integer byte, word or long on a byte boundary, nearly every field, is laid inline while
    // the output's block has room; growing the output is left to the general path.
    bool AddValue(RCScanner* scanner, RCNumber const& number, short width, bool isInteger) {
        if (isInteger && number.IsInteger() && fDef != nullptr && IsByteWordOrLong(width) && fBit % 8 == 0 &&
            static_cast<unsigned long>(fBit) + static_cast<unsigned long>(width) <= fgMaxResourceBytes * 8) {
            if (unsigned char* bytes = fData.AdvanceInBlock(static_cast<uint64_t>(width / 8))) {
                StoreLowOrderFirst(bytes, static_cast<unsigned long>(number.AsInteger()), width);
                fBit += width;
                return true;
            }
        }
        return AddOtherValue(scanner, number, width, isInteger);
    }
    // A value that cannot be known yet is laid as zero and patched when the frame is popped. The
    // caller keeps the expression.
    bool AddValue(RCScanner* scanner, RCExpression* expression, short width, bool isInteger);
    // AddValue for a tree of the type that depends on the output alone: it is never known yet, and
    // reducing it would give an equal tree, so the fixup evaluates the tree itself.
    bool AddOutputValue(RCScanner* scanner, RCExpression* expression, short width, bool isInteger);
    bool AddBytes(RCScanner* scanner, void const* bytes, long count);
    bool AddString(RCScanner* scanner, RCByteString const& string, int stringType);
    bool AddString(RCScanner* scanner, RCByteString const& string, int stringType, long length);
    bool Align(RCScanner* scanner, short width);
    bool Fill(RCScanner* scanner, short width, long count, unsigned long value);

    // Patching and reading back bits that were written before. Positions outside the data are
    // left alone when patching and read as zero bits.
    void PutValue(long bitPosition, short width, RCNumber const& number, bool isInteger);
    static void PutValue(DataArea& area, long bitPosition, short width, RCNumber const& number, bool isInteger);
    long GetValue(long bitPosition, short width);
    // Reads unbounded memory: the caller vouches for the data under the field.
    static long GetValue(void const* data, long bitPosition, short width);

    // Names, for expressions and statements. Without a frame no name is found.
    RCValueCell* LookupValue(UniqueStruct* name);
    void AssignValue(RCScanner* scanner, UniqueStruct* name, RCExpression* expression);
    void AssignValue_Auto(RCScanner* scanner, UniqueStruct* name, RCExpression* expression);
    RCValueCell* AssignValue_Label(RCScanner* scanner, UniqueStruct* name);
    void AssignToClassParameter(UniqueStruct* name, long value);
    void AssignToClassParameter(UniqueStruct* name, RCExpression* expression);

    RCArray* Array(UniqueStruct* name);
    long ArrayIndex(RCScanner* scanner, UniqueStruct* name);
    RCArrayLabel* ArrayLabel(UniqueStruct* name);
    long ArrayRef(RCScanner* scanner, UniqueStruct* name, RCArrayLabel* arrayLabel, int argc, RCExpression** argv);
    // The $$ functions that read the output: 1 $$BitField, 2 $$Byte, 4 $$Long, 5 $$Word, and 0 for
    // $$ArrayIndex of a name.
    long Apply(RCScanner* scanner, int function, int argc, RCExpression** argv);

    // The most bytes one resource may hold. Resources are addressed by 16-bit ids and loaded whole
    // at run time, so no real one comes near the default of 256 MiB; an absurd fill or string
    // count reaches it at once instead of running until memory is exhausted. A harness that runs
    // many compilations in one process may lower it.
    static unsigned long fgMaxResourceBytes;

private:
    // The innermost frame, which the caller needs: without one the program stops on an assertion.
    RCBindings_Def* RequireDefn() const;
    static bool IsByteWordOrLong(short width) { return width == 8 || width == 16 || width == 32; }
    // The width / 8 bytes of value, low order first; width is at most 32.
    static void StoreLowOrderFirst(unsigned char* bytes, unsigned long value, short width) {
        for (int i = 0; i < width / 8; ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
    }
    // Every value the inline path leaves: it checks the width and the bound, and lays floats, bit
    // fields and unaligned fields.
    bool AddOtherValue(RCScanner* scanner, RCNumber const& number, short width, bool isInteger);
    bool AddString(RCScanner* scanner, RCStringInfo const& info);
    bool AddFloat(RCScanner* scanner, double value, short width);
    // Lays the field as zero bits, to be patched by the expression when the frame is popped.
    bool AddDeferred(RCScanner* scanner, RCExpression* expression, bool owned, short width, bool isInteger);
    void AddWholeBytes(unsigned long value, short width);
    void AddBits(unsigned long value, short width);
    // Ends the run with "Out of memory." unless bitCount more bits fit below the bound.
    void RequireRoom(unsigned long bitCount) const;

    RCResourceFile* fResourceFile;
    unsigned long fResType;
    unsigned long fResID;
    RCBindings_Def* fDef;
    RCSymbolTable* fSymbolTable;
    DataArea fData;
    long fBit;
    int fDescriptionIndent;
    DataArea fDescription;
};
