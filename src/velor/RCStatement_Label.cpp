// A label records the current bit position in the frame of the type instance, with the width of
// the field it marks, and then lays its statement.
#include "RCStatement_Label.h"

#include "Assertion.h"
#include "RCBindings.h"
#include "RCDescription.h"
#include "RCScanner.h"
#include "RCValueCell.h"
#include "UniqueNames.h"

RCStatement_Label::RCStatement_Label(UniqueStruct* labelName, RCStatement* labelled)
    : fLabelName(labelName), fLabelled(labelled) {}

// labelled = name ":" ( statement | before "}" or ";" ), entered behind the ":"
RCStatement* RCStatement_Label::ParseLabel(RCScanner* scanner, UniqueStruct* labelName) {
    int token = scanner->TokenType();
    RCStatement* labelled = token == kPPScan_RCurly || token == kPPScan_Semicolon ? new RCStatement_Null
                                                                                  : ParseStatement(scanner);
    return labelled ? new RCStatement_Label(labelName, labelled) : nullptr;
}

bool RCStatement_Label::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    RCNestingGuard nesting(gTypeNesting);
    if (!nesting.Deeper(scanner)) return false;
    RCValueCell* aValueCell = bindings->AssignValue_Label(scanner, fLabelName);
    VELOR_ASSERT(aValueCell != 0);
    aValueCell->SetWidth(static_cast<signed char>(LabelWidth()));
    return fLabelled->CreateResource(bindings, scanner);
}

void RCStatement_Label::WriteDescription(DataArea* area, int indent) {
    // The label is a marker in front of its statement, not a bracket around it.
    writeHead(area, kDesc_Label);
    writeText(area, nameOf(fLabelName));
    writeChar(area, ')');
    newLineIndent(area, indent);
    fLabelled->WriteDescription(area, indent);
}

char RCStatement_Label::LabelWidth() { return fLabelled->LabelWidth(); }

bool RCStatement_Label::ConsumesInput() const { return fLabelled->ConsumesInput(); }
