// The symbol table of one input file: its types, in order of definition, and its static
// variables. It is made per input file and outlives every binding of that file.
#pragma once

#include <unordered_map>

#include "RCScope.h"
#include "RCValueCell.h"

class RCDefinition;

using RCDefinitionListItem = RCNamedListItem<RCDefinition*>;
using RCDefinitionList = RCNamedList<RCDefinitionListItem>;

class RCSymbolTable {
public:
    RCSymbolTable() = default;
    RCSymbolTable(RCSymbolTable const&) = delete;
    RCSymbolTable& operator=(RCSymbolTable const&) = delete;
    ~RCSymbolTable();

    // Appends without a test for duplicates: the parser asks LookupDefinition first.
    void AddDefinition(UniqueStruct* name, RCDefinition* definition);
    // The first definition of that name, or null.
    RCDefinition* LookupDefinition(UniqueStruct* name) const;
    RCDefinitionList& GetDefinitions() { return fDefinitions; }

    // Enters a static with its starting value, both as the current and as the initial value.
    void AddStatic(UniqueStruct* name, RCNumber const& value);
    RCValueCell* LookupStatic(UniqueStruct* name) const;
    // Sets every static back to its initial value, so that an assignment lasts for one resource.
    void ResetStatic();

private:
    RCDefinitionList fDefinitions;
    // The first definition of each name, so that a lookup doesn't walk every type of the file.
    std::unordered_map<UniqueStruct*, RCDefinition*> fFirstDefinitions;
    RCScope<RCValueCell> fStatics;
    RCScope<RCValueCell> fInitialStatics;
};
