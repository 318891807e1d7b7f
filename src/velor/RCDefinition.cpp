// The `type` statement and the instances of a type: parsing a declaration into an RCDefinition
// once, and laying out one instance of it per use, its base first, in a frame of its own. The
// `resource` statement that starts such a walk lives in RCResourceStatement.cpp.

#include "RCDefinition.h"

#include "Assertion.h"
#include "MsgIds.h"
#include "RCBindDefinition.h"
#include "RCBindings.h"
#include "RCDescriptionTrace.h"
#include "RCExpression.h"
#include "RCNestingGuard.h"
#include "RCPtr.h"
#include "RCScanner.h"
#include "RCSymTbl.h"
#include "UniqueNames.h"

namespace {

// Appends a fresh item for each item of source, which may be null.
void appendList(RCNamedList<RCNamedValue>& target, RCNamedList<RCNamedValue>* source) {
    if (!source) return;
    RCListIterator<RCNamedList<RCNamedValue>> items(*source);
    while (RCNamedValue* item = items.Next()) target.Append(item->fName, item->fValue);
}

// Copies of the incoming parameters followed by copies of the definition's own, so that a value
// passed in from outside is assigned, and therefore wins, first.
RCNamedList<RCNamedValue> mergeLists(RCNamedList<RCNamedValue>* incoming, RCNamedList<RCNamedValue>* own) {
    RCNamedList<RCNamedValue> merged;
    appendList(merged, incoming);
    appendList(merged, own);
    return merged;
}

}  // namespace

RCDefinition::RCDefinition(UniqueStruct* name, RCDefinition* super, unsigned long resType)
    : fName(name),
      fSuper(super),
      fBody(nullptr),
      fAsType(nullptr),
      fResType(resType),
      fHasResType(resType != 0),
      fIsBaseType(false) {
    if (fSuper) fSuper->fIsBaseType = true;
}

RCDefinition::RCDefinition(UniqueStruct* name, RCDefinition* super, RCStatement* body, unsigned long resType)
    : RCDefinition(name, super, resType) {
    fBody = body;
}

RCDefinition::RCDefinition(UniqueStruct* name, RCDefinition* super, RCDefinition* asType,
                           unsigned long resType)
    : RCDefinition(name, super, resType) {
    fAsType = asType;
}

RCDefinition::~RCDefinition() { delete fBody; }

// definition = "type" name [ "(" resource-type ")" ] [ ":" base ] compound
void RCDefinition::ParseDefinition(RCScanner* aScanner) {
    VELOR_ASSERT(aScanner->TokenType() == kRCScan_Type);
    aScanner->NextToken();
    RCSymbolTable* symbols = aScanner->GetSymbolTable();
    UniqueStruct* name = aScanner->ScanName(kMsg_ExpectedIdentifier);
    if (!name) return;
    if (symbols->LookupDefinition(name)) {
        aScanner->Error(kMsg_TypeAlreadyDefined, 1, nameOf(name));
        return;
    }
    unsigned long resType = 0;
    bool hasResType = false;
    if (aScanner->Scan(kPPScan_LParen) && !ParseResourceType(aScanner, resType, hasResType)) return;
    RCDefinition* super = nullptr;
    RCNamedList<RCNamedValue> parameters;
    if (aScanner->Scan(kPPScan_Colon) && !ParseBase(aScanner, super, parameters)) return;

    if (aScanner->TokenType() != kPPScan_LCurly) {
        aScanner->Error(kMsg_ExpectedLCurly, 0);
        return;
    }
    RCStatement* body = ParseCompound(aScanner);
    if (!body) return;
    RCDefinition* definition = new RCDefinition(name, super, body, resType);
    // A parenthesised type makes a resource type even when it is 0.
    definition->fHasResType = hasResType;
    definition->fParameters = parameters;
    symbols->AddDefinition(name, definition);
}

// resource-type = expression ")"; entered behind the "(".
bool RCDefinition::ParseResourceType(RCScanner* scanner, unsigned long& resType, bool& hasResType) {
    RCPtr<RCExpression> type(ScanNumber(scanner));
    if (!type) {
        scanner->ScanUntil(kPPScan_RParen);
        return false;
    }
    resType = static_cast<unsigned long>(EvalNumber(type, scanner));
    hasResType = scanner->ScanUntil(kPPScan_RParen, kMsg_ExpectedRParen);
    return hasResType;
}

// base = type-name [ "(" class-parameters ]; entered behind the ":".
bool RCDefinition::ParseBase(RCScanner* scanner, RCDefinition*& super, RCNamedList<RCNamedValue>& parameters) {
    UniqueStruct* superName = scanner->ScanName(kMsg_ExpectedIdentifier);
    if (!superName) return false;
    super = scanner->GetSymbolTable()->LookupDefinition(superName);
    if (!super) {
        scanner->Error(kMsg_ExpectedCustomTypeName, 1, nameOf(superName));
        return false;
    }
    return !scanner->Scan(kPPScan_LParen) || ParseClassParameters(scanner, parameters);
}

// class-parameters = [ name "=" expression { "," name "=" expression } ] ")"
bool RCDefinition::ParseClassParameters(RCScanner* scanner, RCNamedList<RCNamedValue>& parameters) {
    if (scanner->Scan(kPPScan_RParen)) return true;
    do {
        UniqueStruct* name = scanner->ScanName(kMsg_ExpectedIdentifier);
        if (!name || !scanner->Scan(kPPScan_Assign, kMsg_ExpectedEquals)) return false;
        RCPtr<RCExpression> value(ScanNumber(scanner));
        if (!value) return false;
        parameters.Append(name, RCNumber(EvalNumber(value, scanner)));
    } while (scanner->Scan(kPPScan_Comma));
    return scanner->Scan(kPPScan_RParen, kMsg_ExpectedRParen);
}

bool RCDefinition::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    return CreateResource(bindings, scanner, nullptr);
}

bool RCDefinition::CreateResource(RCBindings* bindings, RCScanner* scanner, RCNamedList<RCNamedValue>* parameters) {
    return CreateResource(bindings, scanner, parameters, kPPScan_LCurly);
}

bool RCDefinition::CreateResource(RCBindings* bindings, RCScanner* scanner, RCNamedList<RCNamedValue>* parameters,
                                  int openToken) {
    VELOR_ASSERT(openToken == kPPScan_LCurly || openToken == kPPScan_LParen);
    bool inBraces = openToken == kPPScan_LCurly;
    int closeToken = inBraces ? kPPScan_RCurly : kPPScan_RParen;
    // A missing opening token counts as an error but lets the caller go on as if the instance
    // were empty.
    if (!scanner->Scan(openToken, inBraces ? kMsg_ExpectedLCurly : kMsg_ExpectedLParen)) return true;
    if (CreateResource_Body(bindings, scanner, parameters))
        return scanner->ScanUntil(closeToken, inBraces ? kMsg_ExpectedRCurly : kMsg_ExpectedRParen);
    scanner->ScanUntil(closeToken);
    return false;
}

bool RCDefinition::CreateResource_Body(RCBindings* bindings, RCScanner* scanner,
                                       RCNamedList<RCNamedValue>* parameters) {
    // Each type instance inside another (a base, an `as` type, a field of a named type) recurses
    // on the machine stack.
    RCNestingGuard nesting(gTypeNesting);
    return nesting.Deeper(scanner) && CreateInstance(bindings, scanner, parameters);
}

bool RCDefinition::CreateInstance(RCBindings* bindings, RCScanner* scanner, RCNamedList<RCNamedValue>* parameters) {
    // The frame's fixups run when it closes, at the end of this instance.
    RCBindDefinition frame(scanner, bindings, this);
    RCNamedList<RCNamedValue> merged = mergeLists(parameters, &fParameters);
    RCListIterator<RCNamedList<RCNamedValue>> assignments(merged);
    while (RCNamedValue* parameter = assignments.Next())
        bindings->AssignToClassParameter(parameter->fName, parameter->fValue.AsInteger());

    RCTraceScope trace(bindings, kDesc_Type, fName);
    return CreateParts(bindings, scanner, merged, trace);
}

bool RCDefinition::CreateParts(RCBindings* bindings, RCScanner* scanner, RCNamedList<RCNamedValue>& parameters,
                               RCTraceScope const& trace) {
    if (fSuper && !CreateNested(kDesc_Super, fSuper, bindings, scanner, parameters, trace)) return false;
    if (fBody) return fBody->CreateResource(bindings, scanner);
    VELOR_ASSERT(fAsType != 0);
    return CreateNested(kDesc_As, fAsType, bindings, scanner, parameters, trace);
}

bool RCDefinition::CreateNested(RCDescriptionKeyword keyword, RCDefinition* definition, RCBindings* bindings,
                                RCScanner* scanner, RCNamedList<RCNamedValue>& parameters,
                                RCTraceScope const& trace) {
    bool created = false;
    {
        RCTraceScope nested(trace, keyword, definition->fName);
        created = definition->CreateResource_Body(bindings, scanner, &parameters);
    }
    trace.NewLine();
    return created;
}

void RCDefinition::WriteDescription(DataArea* area, int indent) {
    writeHead(area, kDesc_Type);
    writeText(area, nameOf(fName));
    if (fHasResType) {
        newLineIndent(area, indent + 2);
        writeHead(area, kDesc_Restype);
        writeNumber(area, static_cast<long>(fResType));
        writeChar(area, ')');
    }
    if (fSuper) {
        newLineIndent(area, indent + 2);
        writeHead(area, kDesc_Super);
        writeText(area, nameOf(fSuper->fName));
        writeNamedNumbers(area, indent + 6, kDesc_Args, fParameters);
        writeChar(area, ')');
    }
    if (fAsType) {
        newLineIndent(area, indent + 2);
        writeHead(area, kDesc_As);
        writeText(area, nameOf(fAsType->fName));
        writeChar(area, ')');
    }
    if (fBody) {
        newLineIndent(area, indent + 2);
        fBody->WriteDescription(area, indent + 2);
    }
    writeChar(area, ')');
}

bool RCDefinition::CreateResource_File(RCBindings* bindings, RCScanner* scanner, PP_CInput* input) {
    return Content()->CreateResource_File(bindings, scanner, input);
}

bool RCDefinition::ConsumesInput() const { return Content()->ConsumesInput(); }

RCStatement* RCDefinition::Content() const { return fBody ? fBody : fAsType; }

bool RCDefinition::IsSubClassOf(RCDefinition const* definition) const {
    for (RCDefinition const* type = this; type; type = type->fSuper)
        if (type == definition) return true;
    return false;
}

void RCDefinition::AddClassParameter(UniqueStruct* name, long value) { fParameters.Append(name, RCNumber(value)); }
