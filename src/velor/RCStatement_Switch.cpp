// A switch reads the name of a case and the case's values in braces. Cases are looked up from the
// first, so of two cases of one name the first always wins.
#include "RCStatement_Switch.h"

#include "Assertion.h"
#include "RCBindings.h"
#include "RCDescription.h"
#include "RCPtr.h"
#include "RCScanner.h"
#include "UniqueNames.h"

namespace {

constexpr int kMsg_ExpectedLCurly = 32761;
constexpr int kMsg_ExpectedRCurly = 32743;
constexpr int kMsg_ExpectedCase = 32732;
constexpr int kMsg_ExpectedIdentifier = 32752;
constexpr int kMsg_ExpectedColon = 32748;
constexpr int kMsg_NoCaseInSwitch = 32728;
constexpr int kMsg_NoMatchingCase = 32719;

}  // namespace

RCNamedStatementList::RCNamedStatementList(RCNamedStatementList& source) : RCNamedList(source) {}

RCNamedStatementList::~RCNamedStatementList() { release(*this); }

RCStatement_Switch::RCStatement_Switch(RCNamedStatementList& cases) : fCases(cases) {}

RCStatement* RCStatement_Switch::ParseSwitch(RCScanner* aScanner) {
    VELOR_ASSERT(aScanner->TokenType() == kRCScan_Switch);
    aScanner->NextToken();
    if (!aScanner->Scan(kPPScan_LCurly, kMsg_ExpectedLCurly)) return nullptr;
    RCNamedStatementList cases;
    if (!ParseCases(aScanner, cases)) {
        aScanner->ScanUntil(kPPScan_RCurly);
        return nullptr;
    }
    // This separator comes on top of the statement's terminator.
    ScanValueSeparator(aScanner);
    if (!cases.First()) {
        aScanner->Error(kMsg_NoCaseInSwitch, 0);
        return nullptr;
    }
    return new RCStatement_Switch(cases);
}

bool RCStatement_Switch::ParseCases(RCScanner* scanner, RCNamedStatementList& cases) {
    while (!scanner->Scan(kPPScan_RCurly)) {
        if (!scanner->Scan(kRCScan_Case, kMsg_ExpectedCase)) return false;
        UniqueStruct* name = scanner->ScanName(kMsg_ExpectedIdentifier);
        if (!name || !scanner->Scan(kPPScan_Colon, kMsg_ExpectedColon)) return false;
        // The list ends at the next `case` or at the '}', which stay for this loop.
        RCStatementList statements;
        if (!RCStatement_Compound::ParseCompound(scanner, statements)) return false;
        cases.Append(name, static_cast<RCStatement*>(new RCStatement_Compound(statements)));
    }
    return true;
}

bool RCStatement_Switch::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    RCNestingLevel level(scanner);
    if (!level.Entered()) return false;
    UniqueStruct* name = scanner->ScanName(kMsg_ExpectedIdentifier);
    if (!name || !scanner->Scan(kPPScan_LCurly, kMsg_ExpectedLCurly)) return false;
    RCNamedStatementListItem* chosen = fCases.Lookup(name);
    if (!chosen) {
        scanner->Error(kMsg_NoMatchingCase, 0);
        scanner->ScanUntil(kPPScan_RCurly);
        return false;
    }
    bool created = CreateCase(bindings, scanner, chosen);
    // The case's braces are closed even when its values failed.
    if (!scanner->ScanUntil(kPPScan_RCurly, kMsg_ExpectedRCurly)) created = false;
    ScanValueSeparator(scanner);
    return created;
}

bool RCStatement_Switch::CreateCase(RCBindings* bindings, RCScanner* scanner, RCNamedStatementListItem* chosen) {
    if (!DescriptionsOn()) return chosen->fValue->CreateResource(bindings, scanner);
    // Only the chosen case is traced, on the line of the switch.
    DataArea* trace = bindings->GetDescriptionArea();
    writeText(trace, "(switch (case ");
    writeText(trace, nameOf(chosen->Name()));
    newLineIndent(trace, bindings->IncrementDescriptionIndent(2));
    bool created = chosen->fValue->CreateResource(bindings, scanner);
    bindings->IncrementDescriptionIndent(-2);
    writeText(trace, "))");
    return created;
}

void RCStatement_Switch::WriteDescription(DataArea* area, int indent) {
    writeText(area, "(switch ");
    RCListIterator<RCNamedStatementList> cases(fCases);
    while (RCNamedStatementListItem* item = cases.Next()) {
        newLineIndent(area, indent + 2);
        writeText(area, "(case ");
        writeText(area, nameOf(item->Name()));
        newLineIndent(area, indent + 4);
        item->fValue->WriteDescription(area, indent + 4);
        writeChar(area, ')');
    }
    writeChar(area, ')');
}

// The case's name is read even when no case reads anything.
bool RCStatement_Switch::ConsumesInput() const { return true; }
