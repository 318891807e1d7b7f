// RCBindings_Def: one frame of the binding engine, the names, arrays and deferred fields of one
// type instance while it is being laid out.
#pragma once

#include "RCAlloc.h"
#include "RCArray.h"
#include "RCNamedValue.h"
#include "RCPtr.h"
#include "RCScope.h"
#include "RCValueCell.h"

class RCBindings;
class RCDefinition;
class RCExpression;
class RCScanner;
class RCSymbolTable;

// The most arguments of a $$ function and subscripts of a label reference, and the array nesting
// for which labels keep their subscripts.
constexpr int kArgMax = 32;

// A field laid as zero bits because its value was not known yet; it is patched when its frame is
// popped. The fixup owns a reduced tree, whose cells and arrays belong to the same frame, or
// borrows a tree of the type that depends on the output alone, which outlives every frame.
class RCFixup : public RCRecycled {
public:
    RCFixup(RCExpression* expression, bool owned, long bitPosition, short width, bool isInteger);
    ~RCFixup();

    RCFixup(RCFixup const&) = delete;
    RCFixup& operator=(RCFixup const&) = delete;

    void Apply(RCScanner* scanner, RCBindings* env);

    RCFixup* fNext;

private:
    RCExpression* fExpression;
    bool fOwned;
    long fBitPosition;
    short fWidth;
    bool fIsInteger;
};

class RCBindings_Def : public RCRecycled {
public:
    RCBindings_Def(RCBindings* env, RCDefinition* definition, RCSymbolTable* symbolTable, RCBindings_Def* parent);
    ~RCBindings_Def();

    RCBindings_Def(RCBindings_Def const&) = delete;
    RCBindings_Def& operator=(RCBindings_Def const&) = delete;

    RCBindings_Def* Parent() const { return fParent; }

    // Arrays and their elements; statements reach these through RCBindArray and RCNewArrayElement.
    void PushArray(UniqueStruct* name);
    void PopArray();
    void PushArrayElement();
    void PopArrayElement();

    // Finds an array by name, creating an undefined one if none is visible.
    RCArray* LookupArray(UniqueStruct* name, bool searchActive);
    RCArray* NewArray(UniqueStruct* name);
    // The 1-based index of the current element of the open array of that name.
    long ArrayIndex(RCScanner* scanner, UniqueStruct* name);
    // The position table of a label used inside arrays, created empty on first use.
    RCArrayLabel* LookupArrayLabel(UniqueStruct* name);

    RCValueCell* LookupLabel(UniqueStruct* name);
    void AssignLabel(RCScanner* scanner, RCValueCell* cell);
    RCValueCell* LookupAuto(UniqueStruct* name);
    void AssignAuto(RCValueCell* cell);
    RCValueCell* LookupStatic(UniqueStruct* name);
    // Finds the cell of a name in any open array scope, or makes an undefined one.
    RCValueCell* LookupUnknown(UniqueStruct* name);
    RCValueCell* NewValueCell(UniqueStruct* name);

    // The first assignment of a name wins, so the outermost type's parameter overrides.
    void AssignToClassParameter(UniqueStruct* name, long value);

    // Takes ownership of the expression when owned is true; else the caller keeps it alive.
    void AddFixup(RCExpression* expression, bool owned, long bitPosition, short width, bool isInteger);
    // Patches the deferred fields in recording order, then the labelled fields of class parameters.
    void ApplyFixups(RCScanner* scanner);

private:
    void ApplyClassParameters();

    RCBindings* fEnv;
    RCDefinition* fDefinition;
    RCSymbolTable* fSymbolTable;
    RCScope<RCValueCell> fAutos;
    RCScopeList<RCNamedArrayLabel> fArrayLabels;
    RCScope<RCValueCell> fLabels;
    RCScope<RCValueCell> fUnknown;
    RCNamedList<RCNamedValue> fClassParameters;
    RCBindings_Def* fParent;
    RCScope<RCArray> fArrays;
    RCScopeList<RCArray> fActiveArrays;
    long fArrayDepth;
    // Only the entries below fArrayDepth hold anything: each is set as its array is entered, so
    // a frame, made for every instance, does not clear the rest.
    long fSubscripts[kArgMax];
    RCScopeList<RCValueCell> fCells;
    RCScope<RCArray> fOwnedArrays;
    RCList<RCFixup> fFixups;
};
