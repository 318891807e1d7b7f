#include "RCDefinition.h"

#include <cstdio>
#include <cstring>

#include "Assertion.h"
#include "MsgIds.h"
#include "Options.h"
#include "RCBindDefinition.h"
#include "RCBindings.h"
#include "RCByteString.h"
#include "RCDescription.h"
#include "RCDescriptionTrace.h"
#include "RCExpression.h"
#include "RCLanguagePeek.h"
#include "RCNestingGuard.h"
#include "RCPtr.h"
#include "RCResource.h"
#include "RCResourceFile.h"
#include "RCScanner.h"
#include "RCSymTbl.h"
#include "TemporaryBuffer.h"
#include "UniqueNames.h"

namespace {

// Each type instance inside another (a base, an `as` type, a field of a named type) recurses on
// the machine stack; a nest deeper than this is refused before the stack runs out.
RCNesting gInstanceNesting{1000, kMsg_OutOfMemory};

constexpr unsigned long kDefaultFlags = 0x21;  // LOADONCALL | RELOCATABLE
constexpr unsigned long kInstanceDescriptionType = 0x46577244;  // 'FWrD'

struct FlagName {
    char const* name;
    unsigned long value;
};

// STATIC and LOCKED are the same bit.
constexpr FlagName sFlagNames[] = {
    {"LOADONCALL", 0x01}, {"PRELOAD", 0x02},     {"SYSHEAP", 0x04}, {"PROTECTED", 0x08},
    {"PURGEABLE", 0x10},  {"RELOCATABLE", 0x20}, {"STATIC", 0x40},  {"LOCKED", 0x40},
};

struct NumericKind {
    long number;
    char const* name;
};

// `resource 13 (...)` names a type by number; the name is then looked up like any other.
constexpr NumericKind sNumericKinds[] = {
    {1, "ACCELTABLE"}, {2, "BITMAP"},    {3, "ICON"},       {4, "CURSOR"},     {5, "CODEPAGE"},
    {9, "MENU"},       {10, "MSGTABLE"}, {11, "STRTABLE"},  {12, "CUSTOMTYPE"}, {13, "MULTISTRING"},
    {578, "PNGA"},     {579, "PNGR"},    {580, "PNGAD"},    {581, "PNGRD"},    {582, "PNGC"},
};

char const* NameOfNumericKind(long number) {
    for (NumericKind const& kind : sNumericKinds)
        if (kind.number == number) return kind.name;
    return nullptr;
}

// The option's bit, or 0 for a word that names no option. Options are matched exactly, with case.
unsigned long FlagOfName(char const* name) {
    for (FlagName const& flag : sFlagNames)
        if (std::strcmp(flag.name, name) == 0) return flag.value;
    return 0;
}

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

// The parts of a `resource` statement's head: `kind (id, options, "name")`.
struct ResourceHead {
    UniqueStruct* typeName = nullptr;
    short id = 0;
    unsigned long flags = 0;
    RCByteString name;
};

UniqueStruct* ParseResourceKind(RCScanner* scanner) {
    if (UniqueStruct* name = scanner->PeekName()) {
        scanner->NextToken();
        return name;
    }
    RCPtr<RCExpression> number(RCStatement::ScanNumber(scanner));
    if (!number) return nullptr;
    long kind = RCStatement::EvalNumber(number, scanner);
    char const* name = NameOfNumericKind(kind);
    if (!name) {
        scanner->Error(kMsg_PredefinedResourceNumber, 1, kind);
        return nullptr;
    }
    return uniqueOf(name);
}

// Options follow the id, each behind ',' or '|'; the loop ends at the first separator that is not
// followed by a word, which lets the name's string stand behind either separator.
bool ParseResourceOptions(RCScanner* scanner, unsigned long& flags) {
    while ((scanner->Scan(kPPScan_Comma) || scanner->Scan(kPPScan_Or)) && scanner->TokenType() == kPPScan_Ident) {
        char const* word = nameOf(scanner->PeekName());
        unsigned long flag = FlagOfName(word);
        if (!flag) {
            scanner->Error(kMsg_UnknownResourceOption, 1, word);
            scanner->ScanUntil(kPPScan_RParen);
            return false;
        }
        flags |= flag;
        scanner->NextToken();
    }
    if (!flags) flags = kDefaultFlags;
    return true;
}

bool ParseResourceName(RCScanner* scanner, RCByteString& name) {
    if (scanner->TokenType() != kPPScan_String) return true;
    RCPtr<RCExpression> text(RCStatement::ScanString(scanner));
    if (!text) {
        scanner->ScanUntil(kPPScan_RParen);
        return false;
    }
    name = text->AsString();
    return true;
}

bool ParseResourceHead(RCScanner* scanner, ResourceHead& head) {
    head.typeName = ParseResourceKind(scanner);
    if (!head.typeName) return false;
    if (!scanner->Scan(kPPScan_LParen, kMsg_ExpectedLParen)) return false;
    RCPtr<RCExpression> id(RCStatement::ScanNumber(scanner));
    if (!id) {
        scanner->ScanUntil(kPPScan_RParen);
        return false;
    }
    head.id = static_cast<short>(RCStatement::EvalNumber(id, scanner));
    return ParseResourceOptions(scanner, head.flags) && ParseResourceName(scanner, head.name) &&
           scanner->Scan(kPPScan_RParen, kMsg_ExpectedRParen);
}

// Sets the language of the resource's strings from the words that open its value list.
void ApplyLanguagePeek(RCScanner* scanner) {
    PP_CTextReader token = scanner->TokenText();
    RCLanguagePeek peek = PeekLanguage(token.GetReadPtr(), scanner->LiteralLimit());
    gCurrentLanguage = peek.language;
    if (peek.encodingWordMissing && scanner->IsUTF8()) scanner->Error(kPPErr_SignatureNeedsUTF8Encoding, 0);
}

// The usable definition of the resource's type, or null after an error was reported.
RCDefinition* ResourceDefinition(RCScanner* scanner, UniqueStruct* typeName) {
    RCDefinition* definition = scanner->GetSymbolTable()->LookupDefinition(typeName);
    ApplyLanguagePeek(scanner);
    if (!definition) {
        scanner->Error(kMsg_BadResourceKind, 1, nameOf(typeName));
        return nullptr;
    }
    if (!definition->HasResourceType()) {
        scanner->Error(kMsg_NoResourceType, 1, nameOf(typeName));
        return nullptr;
    }
    return definition;
}

// The resource's contents from a file named by a string instead of a value list.
bool CreateResourceFromFile(RCScanner* scanner, RCDefinition* definition, RCBindings& bindings) {
    RCPtr<RCExpression> fileName(RCStatement::ScanString(scanner));
    if (!fileName) return false;
    RCByteString name = fileName->AsString();
    PP_CInput* input = scanner->ReadFile(name.Bytes(), false);
    scanner->Scan(kPPScan_Semicolon);
    bool created = false;
    if (input) {
        scanner->PushInput(input);
        created = definition->CreateResource_File(&bindings, scanner, input);
        scanner->PopInput();
    } else {
        scanner->Error(kPPErr_IncludeBadName, 1, name.Bytes());
    }
    name.Destroy();
    return created;
}

// Hands the compiled bytes to the file. A resource whose type and id are taken is dropped with a
// warning, and the first one stays; the answer tells whether this one was kept.
bool AddCompiledResource(RCScanner* scanner, RCResourceFile* resourceFile, RCDefinition* definition,
                         ResourceHead const& head, RCBindings& bindings) {
    RCResource* resource = new RCResource(definition->GetResourceType(), head.id);
    if (head.name.fLength != 0) resource->SetName(head.name);
    resource->SetFlags(head.flags);
    resource->AddContents(bindings.ResourceData(), bindings.ResourceSize());
    int anErr = resourceFile->AddResource(resource);
    if (anErr == 0) return true;
    VELOR_ASSERT(anErr == kMsg_DuplicateResource);
    scanner->Warning(kMsg_DuplicateResource, 2, static_cast<unsigned>(definition->GetResourceType()),
                     static_cast<int>(head.id));
    delete resource;
    return false;
}

// Stores what the walk traced of the instance, named after the type and the id.
void AddInstanceDescription(RCResourceFile* resourceFile, RCDefinition* definition, short id, RCBindings& bindings) {
    char const* typeName = nameOf(definition->GetName());
    TemporaryBuffer name(std::strlen(typeName) + 32);
    std::snprintf(name.GetBuffer(), name.GetSize(), "%s(%04lx)", typeName, static_cast<long>(id));
    AddDescriptionResource(resourceFile, kInstanceDescriptionType, name.GetBuffer(), name.GetBuffer(),
                           bindings.GetDescriptionArea());
}

bool CompileResource(RCScanner* scanner, RCResourceFile* resourceFile, ResourceHead const& head) {
    RCDefinition* definition = ResourceDefinition(scanner, head.typeName);
    if (!definition) return false;
    RCSymbolTable* symbols = scanner->GetSymbolTable();
    RCBindings bindings(symbols, resourceFile, definition->GetResourceType(),
                        static_cast<unsigned long>(static_cast<long>(head.id)));
    bool fromFile = scanner->TokenType() == kPPScan_String;
    if (!fromFile) symbols->ResetStatic();
    bool created = fromFile ? CreateResourceFromFile(scanner, definition, bindings)
                            : definition->CreateResource(&bindings, scanner);
    if (!created) return false;
    bool added = AddCompiledResource(scanner, resourceFile, definition, head, bindings);
    // A file's contents were not walked, so there is no trace to store.
    if (added && !fromFile && gOptions->GetWriteDescriptions())
        AddInstanceDescription(resourceFile, definition, head.id, bindings);
    return true;
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

bool RCDefinition::DoResource(RCScanner* aScanner, RCResourceFile* resourceFile) {
    VELOR_ASSERT(aScanner->TokenType() == kRCScan_Resource);
    aScanner->NextToken();
    ResourceHead head;
    bool created = ParseResourceHead(aScanner, head) && CompileResource(aScanner, resourceFile, head);
    head.name.Destroy();
    gCurrentLanguage = 0;
    return created;
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
    RCNestingGuard nesting(gInstanceNesting);
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
