// A switch reads the name of a case and the case's values in braces. Cases are looked up from the
// first, so of two cases of one name the first always wins.
#include "RCStatement_Switch.h"

#include "Assertion.h"
#include "MsgIds.h"
#include "RCBindings.h"
#include "RCDescription.h"
#include "RCDescriptionTrace.h"
#include "RCScanner.h"
#include "UniqueNames.h"

RCNamedStatementList::RCNamedStatementList(RCNamedStatementList& source) : RCNamedList(source) {}

RCNamedStatementList::~RCNamedStatementList() { release(*this); }

RCStatement_Switch::RCStatement_Switch(RCNamedStatementList& cases) : fCases(cases) {}

// switch = "switch" "{" cases [ ";" | "," ]
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
        aScanner->Error(kMsg_NoCasesInSwitch, 0);
        return nullptr;
    }
    return new RCStatement_Switch(cases);
}

// cases = { "case" name ":" statement-list } "}"
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

// switch-value = name "{" case-values "}" [ ";" | "," ]
bool RCStatement_Switch::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    RCNestingGuard nesting(gTypeNesting);
    if (!nesting.Deeper(scanner)) return false;
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
    // Only the chosen case is traced, on the line of the switch and one step deeper than it.
    RCTraceScope trace(bindings, kDesc_Switch);
    if (trace.Area()) {
        writeHead(trace.Area(), kDesc_Case);
        writeText(trace.Area(), nameOf(chosen->Name()));
    }
    trace.NewLine();
    bool created = chosen->fValue->CreateResource(bindings, scanner);
    if (trace.Area()) writeChar(trace.Area(), ')');
    return created;
}

void RCStatement_Switch::WriteDescription(DataArea* area, int indent) {
    writeHead(area, kDesc_Switch);
    RCListIterator<RCNamedStatementList> cases(fCases);
    while (RCNamedStatementListItem* item = cases.Next()) {
        newLineIndent(area, indent + 2);
        writeHead(area, kDesc_Case);
        writeText(area, nameOf(item->Name()));
        newLineIndent(area, indent + 4);
        item->fValue->WriteDescription(area, indent + 4);
        writeChar(area, ')');
    }
    writeChar(area, ')');
}

// The case's name is read even when no case reads anything.
bool RCStatement_Switch::ConsumesInput() const { return true; }
