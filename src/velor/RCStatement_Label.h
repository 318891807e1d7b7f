// RCStatement_Label: `name: statement`, which names the bit position at which its statement
// starts. Expressions above the label that use it are patched when the type instance ends.
#pragma once

#include "RCPtr.h"
#include "RCStatement.h"

class RCStatement_Label final : public RCStatement {
public:
    // Takes the labelled statement.
    RCStatement_Label(UniqueStruct* labelName, RCStatement* labelled);

    // Entered behind the ':'. A label before '}' or ';' stands on a null statement, and the token
    // is left for the list.
    static RCStatement* ParseLabel(RCScanner* scanner, UniqueStruct* labelName);

    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    void WriteDescription(DataArea* area, int indent) override;
    char LabelWidth() override;
    bool ConsumesInput() const override;

private:
    UniqueStruct* fLabelName;
    RCPtr<RCStatement> fLabelled;
};
