// The `resource` statement: its head, then the instance of its type compiled from the value list
// (or the bytes of a file) into one RCBindings, and the finished resource handed to the file.

#include "RCResourceStatement.h"

#include <cstdio>
#include <cstring>

#include "Assertion.h"
#include "MsgIds.h"
#include "Options.h"
#include "RCBindings.h"
#include "RCDefinition.h"
#include "RCDescription.h"
#include "RCExpression.h"
#include "RCLanguagePeek.h"
#include "RCPtr.h"
#include "RCResource.h"
#include "RCResourceFile.h"
#include "RCScanner.h"
#include "RCSymTbl.h"
#include "TemporaryBuffer.h"
#include "UniqueNames.h"

namespace {

constexpr unsigned long kDefaultFlags = 0x21;  // LOADONCALL | RELOCATABLE

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

// resource-kind = type-name | expression
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

// resource-options = { ( "," | "|" ) option-name }
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

// resource-name = [ string ]
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

}  // namespace

// resource-head = resource-kind "(" expression resource-options [ "," | "|" ] resource-name ")"
bool ParseResourceHead(RCScanner* scanner, RCResourceHead& head) {
    head.typeName = ParseResourceKind(scanner);
    if (!head.typeName) return false;
    if (!scanner->Scan(kPPScan_LParen, kMsg_ExpectedLParen)) return false;
    // The id is a value as those of a value list are: mostly a literal, or one folded from literals.
    RCNumber literal;
    RCPtr<RCExpression> id;
    if (!RCStatement::ScanNumber(scanner, literal, id)) {
        scanner->ScanUntil(kPPScan_RParen);
        return false;
    }
    head.id = static_cast<short>(id ? RCStatement::EvalNumber(id, scanner) : literal.AsInteger());
    return ParseResourceOptions(scanner, head.flags) && ParseResourceName(scanner, head.name.Get()) &&
           scanner->Scan(kPPScan_RParen, kMsg_ExpectedRParen);
}

namespace {

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
    RCByteStringOwner name(fileName->AsString());
    PP_CInput* input = scanner->ReadFile(name.Get().Bytes(), false);
    scanner->Scan(kPPScan_Semicolon);
    bool created = false;
    if (input) {
        scanner->PushInput(input);
        created = definition->CreateResource_File(&bindings, scanner, input);
        scanner->PopInput();
    } else {
        scanner->Error(kPPErr_IncludeBadName, 1, name.Get().Bytes());
    }
    return created;
}

// Hands the compiled bytes to the file. A resource whose type and id are taken is dropped with a
// warning, and the first one stays; the answer tells whether this one was kept.
bool AddCompiledResource(RCScanner* scanner, RCResourceFile* resourceFile, RCDefinition* definition,
                         RCResourceHead const& head, RCBindings& bindings) {
    RCResource* resource = new RCResource(definition->GetResourceType(), head.id);
    if (head.name.Get().fLength != 0) resource->SetName(head.name.Get());
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

}  // namespace

bool CompileResource(RCScanner* scanner, RCResourceFile* resourceFile, RCResourceHead const& head) {
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

bool RCDefinition::DoResource(RCScanner* aScanner, RCResourceFile* resourceFile) {
    VELOR_ASSERT(aScanner->TokenType() == kRCScan_Resource);
    aScanner->NextToken();
    RCResourceHead head;
    bool created = ParseResourceHead(aScanner, head) && CompileResource(aScanner, resourceFile, head);
    gCurrentLanguage = 0;
    return created;
}

