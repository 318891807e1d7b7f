// One frame of the binding engine: its names, arrays and the fixups that run when it closes.

#include "RCBindings_Def.h"

#include "Assertion.h"
#include "MsgIds.h"
#include "RCBindings.h"
#include "RCExpression.h"
#include "RCScanner.h"
#include "RCSymTbl.h"
#include "UniqueNames.h"

namespace {

// Moves what a closing scope must not lose into the scope now current: undefined cells and arrays
// were named before their definition, and their definition may still come.
template <class T>
void popScopeKeepingUndefined(RCScope<T>& scope) {
    RCScopeList<T>* closed = scope.PopScope();
    RCScopeListIterator<T> items(*closed);
    while (RCScopeListItem<T>* item = items.Next())
        if (!item->fValue->IsDefined()) scope.Insert(item->fValue);
    delete closed;
}

} // namespace

RCFixup::RCFixup(RCExpression* expression, bool owned, long bitPosition, short width, bool isInteger)
    : fNext(nullptr), fExpression(expression), fOwned(owned), fBitPosition(bitPosition), fWidth(width),
      fIsInteger(isInteger) {}

RCFixup::~RCFixup() {
    if (fOwned) delete fExpression;
}

void RCFixup::Apply(RCScanner* scanner, RCBindings* env) {
    env->PutValue(fBitPosition, fWidth, fExpression->Evaluate(scanner, env), fIsInteger);
}

RCBindings_Def::RCBindings_Def(RCBindings* env, RCDefinition* definition, RCSymbolTable* symbolTable,
                               RCBindings_Def* parent)
    : fEnv(env),
      fDefinition(definition),
      fSymbolTable(symbolTable),
      fParent(parent),
      fArrayDepth(0) {}

RCBindings_Def::~RCBindings_Def() {
    // Fixup trees point at cells and arrays of this frame, so they go first.
    fFixups.MakeEmpty();
    release(fArrayLabels);
    release(fCells);
    fOwnedArrays.ReleaseScope();
}

void RCBindings_Def::PushArray(UniqueStruct* name) {
    RCArray* array = name == nullptr ? new RCArray(nullptr) : LookupArray(name, true);
    array->SetDefined();
    fUnknown.PushScope();
    fActiveArrays.Push(new RCScopeListItem<RCArray>(array));
    if (fArrayDepth < kArgMax) fSubscripts[fArrayDepth] = 0;
    ++fArrayDepth;
}

void RCBindings_Def::PopArray() {
    VELOR_ASSERT(fArrayDepth > 0);
    --fArrayDepth;
    RCScopeListItem<RCArray>* item = fActiveArrays.Pop();
    if (item->fValue->Name() == nullptr) delete item->fValue;
    delete item;
    popScopeKeepingUndefined(fUnknown);
}

void RCBindings_Def::PushArrayElement() {
    VELOR_ASSERT(fArrayDepth > 0);
    fLabels.PushScope();
    fArrays.PushScope();
    fActiveArrays.First()->fValue->NewArrayElement();
    if (fArrayDepth <= kArgMax) ++fSubscripts[fArrayDepth - 1];
}

void RCBindings_Def::PopArrayElement() {
    // The cells of the labels live on in fCells; only their visibility ends here.
    delete fLabels.PopScope();
    popScopeKeepingUndefined(fArrays);
}

RCArray* RCBindings_Def::LookupArray(UniqueStruct* name, bool searchActive) {
    if (searchActive) {
        if (RCScopeListItem<RCArray>* active = fActiveArrays.Lookup(name)) return active->fValue;
    }
    if (RCArray* array = fArrays.Lookup(name, true)) return array;
    return NewArray(name);
}

RCArray* RCBindings_Def::NewArray(UniqueStruct* name) {
    RCArray* array = new RCArray(name);
    // Owned apart from visibility: an array of the same name may be made again in a later element.
    fOwnedArrays.GetScope()->Push(new RCScopeListItem<RCArray>(array));
    fArrays.Insert(array);
    return array;
}

long RCBindings_Def::ArrayIndex(RCScanner* scanner, UniqueStruct* name) {
    if (RCScopeListItem<RCArray>* active = fActiveArrays.Lookup(name)) return active->fValue->Index();
    VELOR_ASSERT_TEXT("aScanner != 0", scanner != nullptr);
    scanner->Error(kMsg_UnknownArray, 2, nameOf(name), nameOf(name));
    return 0;
}

RCArrayLabel* RCBindings_Def::LookupArrayLabel(UniqueStruct* name) {
    if (RCScopeListItem<RCNamedArrayLabel>* item = fArrayLabels.Lookup(name)) return item->fValue->ArrayLabel();
    RCNamedArrayLabel* named = new RCNamedArrayLabel(name, new RCArrayLabel);
    fArrayLabels.Append(new RCScopeListItem<RCNamedArrayLabel>(named));
    return named->ArrayLabel();
}

RCValueCell* RCBindings_Def::LookupLabel(UniqueStruct* name) {
    return fLabels.Lookup(name, true);
}

void RCBindings_Def::AssignLabel(RCScanner* scanner, RCValueCell* cell) {
    if (fArrayDepth > kArgMax) {
        scanner->Error(kMsg_LabelTooDeep, 1, nameOf(cell->Name()));
    } else if (fArrayDepth != 0) {
        LookupArrayLabel(cell->Name())
            ->Assign(scanner, cell->Name(), static_cast<int>(fArrayDepth), fSubscripts, cell->Value().AsInteger());
    }
    fLabels.Insert(cell);
}

RCValueCell* RCBindings_Def::LookupAuto(UniqueStruct* name) {
    return fAutos.Lookup(name);
}

void RCBindings_Def::AssignAuto(RCValueCell* cell) {
    fAutos.Insert(cell);
}

RCValueCell* RCBindings_Def::LookupStatic(UniqueStruct* name) {
    return fSymbolTable->LookupStatic(name);
}

RCValueCell* RCBindings_Def::LookupUnknown(UniqueStruct* name) {
    if (RCValueCell* cell = fUnknown.Lookup(name, true)) return cell;
    RCValueCell* cell = NewValueCell(name);
    fUnknown.Insert(cell);
    return cell;
}

RCValueCell* RCBindings_Def::NewValueCell(UniqueStruct* name) {
    RCValueCell* cell = new RCValueCell(name);
    fCells.Push(new RCScopeListItem<RCValueCell>(cell));
    return cell;
}

void RCBindings_Def::AssignToClassParameter(UniqueStruct* name, long value) {
    if (fClassParameters.Lookup(name) == nullptr) fClassParameters.Append(name, RCNumber(value));
}

void RCBindings_Def::AddFixup(RCExpression* expression, bool owned, long bitPosition, short width, bool isInteger) {
    fFixups.Append(new RCFixup(expression, owned, bitPosition, width, isInteger));
}

void RCBindings_Def::ApplyFixups(RCScanner* scanner) {
    RCListIterator<RCList<RCFixup>> fixups(fFixups);
    while (RCFixup* fixup = fixups.Next()) fixup->Apply(scanner, fEnv);
    ApplyClassParameters();
}

void RCBindings_Def::ApplyClassParameters() {
    RCListIterator<RCNamedList<RCNamedValue>> parameters(fClassParameters);
    while (RCNamedValue* parameter = parameters.Next()) {
        // A parameter that names no label in scope is ignored without a word.
        if (RCValueCell* label = LookupLabel(parameter->Name()))
            fEnv->PutValue(label->Value().AsInteger(), label->Width(), parameter->fValue, true);
    }
}
