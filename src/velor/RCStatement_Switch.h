// RCStatement_Switch: named alternatives, of which the value list picks one by name. The name is
// read but never laid; a type that must record the choice puts a constant field in each case.
#pragma once

#include "RCStatement.h"

using RCNamedStatementListItem = RCNamedListItem<RCStatement*>;

// The cases of a switch, in order of declaration; owns their statements. Copying takes the items
// away from the source.
class RCNamedStatementList : public RCNamedList<RCNamedStatementListItem> {
public:
    RCNamedStatementList() = default;
    RCNamedStatementList(RCNamedStatementList& source);
    RCNamedStatementList& operator=(RCNamedStatementList&) = delete;
    ~RCNamedStatementList();
};

class RCStatement_Switch final : public RCStatement {
public:
    // Takes the list.
    explicit RCStatement_Switch(RCNamedStatementList& cases);

    static RCStatement* ParseSwitch(RCScanner* aScanner);

    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    void WriteDescription(DataArea* area, int indent) override;
    bool ConsumesInput() const override;

private:
    // The cases up to and with the closing '}'; false after a message.
    static bool ParseCases(RCScanner* scanner, RCNamedStatementList& cases);
    bool CreateCase(RCBindings* bindings, RCScanner* scanner, RCNamedStatementListItem* chosen);

    RCNamedStatementList fCases;
};
