// The symbol table of one input file: types by name in order of definition, and static variables.

#include "RCSymTbl.h"

#include "RCDefinition.h"

// The table owns its definitions: they die with the input file.
RCSymbolTable::~RCSymbolTable() {
    release(fDefinitions);
    fStatics.ReleaseScope();
    fInitialStatics.ReleaseScope();
}

void RCSymbolTable::AddDefinition(UniqueStruct* name, RCDefinition* definition) {
    fDefinitions.Append(name, definition);
    fFirstDefinitions.try_emplace(name, definition);
}

RCDefinition* RCSymbolTable::LookupDefinition(UniqueStruct* name) const {
    auto found = fFirstDefinitions.find(name);
    return found == fFirstDefinitions.end() ? nullptr : found->second;
}

void RCSymbolTable::AddStatic(UniqueStruct* name, RCNumber const& value) {
    fInitialStatics.Insert(new RCValueCell(name, value));
    fStatics.Insert(new RCValueCell(name, value));
}

RCValueCell* RCSymbolTable::LookupStatic(UniqueStruct* name) const {
    return fStatics.Lookup(name);
}

// AddStatic pushes every static onto both lists at once, so the lists walk in step and no name is
// looked up: a file with many statics pays for each once per resource, not once per static.
void RCSymbolTable::ResetStatic() {
    RCScopeListIterator<RCValueCell> initialCells(*fInitialStatics.GetScope());
    RCScopeListIterator<RCValueCell> cells(*fStatics.GetScope());
    while (RCScopeListItem<RCValueCell>* initial = initialCells.Next()) {
        RCScopeListItem<RCValueCell>* cell = cells.Next();
        VELOR_ASSERT(cell != nullptr && cell->Name() == initial->Name());
        cell->fValue->SetValue(initial->fValue->Value());
    }
}
