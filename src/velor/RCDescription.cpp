// The description writers and the keyword table; descriptions become resources here.

#include "RCDescription.h"

#include <cstdio>
#include <cstring>

#include "DataArea.h"
#include "RCDefinition.h"
#include "RCExpression.h"
#include "RCHash.h"
#include "RCResource.h"
#include "RCResourceFile.h"
#include "RCSymTbl.h"
#include "TemporaryBuffer.h"
#include "UniqueNames.h"

namespace {

struct DescriptionWord {
    RCDescriptionKeyword fKeyword;
    char const* fWord;
    // Whether the head keeps a blank behind the word. It does wherever something follows on the
    // line, and also behind `args`, which a line break follows: the reader skips the blank.
    bool fBlankBehind;
};

// One row per keyword, in the order of RCDescriptionKeyword, so that a keyword indexes its row.
constexpr DescriptionWord kDescriptionWords[] = {
    {kDesc_Type, "type", true},
    {kDesc_Restype, "restype", true},
    {kDesc_Super, "super", true},
    {kDesc_As, "as", true},
    {kDesc_Args, "args", true},
    {kDesc_Prog, "prog", false},
    {kDesc_Null, "null", false},
    {kDesc_Bitstring, "bitstring", true},
    {kDesc_Float, "float", true},
    {kDesc_String, "string", true},
    {kDesc_Value, "value", true},
    {kDesc_Length, "length", true},
    {kDesc_Oneof, "oneof", false},
    {kDesc_If, "if", true},
    {kDesc_Arrayref, "arrayref", true},
    {kDesc_CountOf, "$$CountOf", true},
    {kDesc_ArrayIndex, "$$ArrayIndex", true},
    {kDesc_Array, "array", false},
    {kDesc_Name, "name", true},
    {kDesc_Switch, "switch", true},
    {kDesc_Case, "case", true},
    {kDesc_Align, "align", true},
    {kDesc_Fill, "fill", true},
    {kDesc_Count, "count", true},
    {kDesc_Fillspec, "fillspec", false},
    {kDesc_Label, "label", true},
    {kDesc_Static, "static", true},
    {kDesc_Auto, "auto", true},
    {kDesc_Set, "set", true},
    {kDesc_Bitmap, "bitmap", false},
    {kDesc_Multistring, "multistring", false},
};

constexpr bool RowsFollowTheKeywords() {
    int row = 0;
    for (DescriptionWord const& word : kDescriptionWords)
        if (word.fKeyword != row++) return false;
    return row == kDesc_KeywordCount;
}
static_assert(RowsFollowTheKeywords(), "one row per description keyword, in order");

}  // namespace

char const* descriptionWord(RCDescriptionKeyword keyword) { return kDescriptionWords[keyword].fWord; }

void writeHead(DataArea* area, RCDescriptionKeyword keyword) {
    writeChar(area, '(');
    writeText(area, descriptionWord(keyword));
    if (kDescriptionWords[keyword].fBlankBehind) writeChar(area, ' ');
}

int headWidth(char const* word) { return static_cast<int>(std::strlen(word)) + 2; }

int headWidth(RCDescriptionKeyword keyword) { return headWidth(descriptionWord(keyword)); }

void writeChar(DataArea* area, char c) { area->PutChar(c); }

void writeBlanks(DataArea* area, int count) {
    for (int i = 0; i < count; ++i) writeChar(area, ' ');
}

void writeText(DataArea* area, char const* text) { area->Write(text, std::strlen(text)); }

void newLine(DataArea* area) { writeChar(area, '\n'); }

void newLineIndent(DataArea* area, int indent) {
    newLine(area);
    writeBlanks(area, indent);
}

void writeNumber(DataArea* area, RCNumber const& number) {
    char text[64];
    if (number.IsInteger())
        std::snprintf(text, sizeof text, "%lu", static_cast<unsigned long>(number.AsInteger()));
    else
        std::snprintf(text, sizeof text, "%g", number.AsDouble());
    writeText(area, text);
}

void writeNumber(DataArea* area, long number) { writeNumber(area, RCNumber(number)); }

void writeString(DataArea* area, char const* text) { writeString(area, text, std::strlen(text)); }

void writeString(DataArea* area, char const* bytes, unsigned long length) {
    writeChar(area, '"');
    for (unsigned long i = 0; i < length; ++i) {
        unsigned char c = static_cast<unsigned char>(bytes[i]);
        if (c == '\t') {
            writeText(area, "\\t");
        } else if (c == '\n') {
            writeText(area, "\\n");
        } else if (c == '\\') {
            writeText(area, "\\\\");
        } else if (c >= 0x20 && c < 0x7F) {
            writeChar(area, static_cast<char>(c));
        } else {
            char octal[8];
            std::snprintf(octal, sizeof octal, "\\%03o", c);
            writeText(area, octal);
        }
    }
    writeChar(area, '"');
}

void writeExpressionGroup(DataArea* area, RCDescriptionKeyword head, RCExpression* expression, int indent) {
    writeHead(area, head);
    expression->WriteDescription(area, indent);
    writeChar(area, ')');
}

namespace {

// A named group: the head on a new line, each entry as "(name value)" on a line of its own two
// deeper, then ")". The value writer gets the indent of the entry's value.
template <class List, class WriteValue>
void writeNamedGroup(DataArea* area, int indent, char const* lead, RCDescriptionKeyword head, List& values,
                     WriteValue writeValue) {
    if (!values.First()) return;
    newLineIndent(area, indent);
    writeText(area, lead);
    writeHead(area, head);
    RCListIterator<List> entries(values);
    while (auto* entry = entries.Next()) {
        newLineIndent(area, indent + 2);
        writeChar(area, '(');
        writeText(area, nameOf(entry->fName));
        writeChar(area, ' ');
        writeValue(*entry, indent + 4);
        writeChar(area, ')');
    }
    writeChar(area, ')');
}

}  // namespace

void writeNamedNumbers(DataArea* area, int indent, RCDescriptionKeyword head, RCNamedList<RCNamedValue>& values) {
    writeNamedGroup(area, indent, "", head, values,
                    [area](RCNamedValue& entry, int) { writeNumber(area, entry.fValue); });
}

void writeNamedExpressions(DataArea* area, int indent, bool blankBeforeHead, RCDescriptionKeyword head,
                           RCNamedExpressionList& values) {
    writeNamedGroup(area, indent, blankBeforeHead ? " " : "", head, values,
                    [area](RCNamedExpression& entry, int valueIndent) { entry.fValue->WriteDescription(area, valueIndent); });
}

void writePayload(DataArea* area, RCDescriptionKeyword payload) {
    writeHead(area, kDesc_Prog);
    writeChar(area, ' ');
    writeHead(area, payload);
    writeText(area, "))");
}

namespace {

constexpr unsigned long kDescriptionFlags = 0x10;

void AddTypeDescription(RCDefinition* definition, RCResourceFile* resourceFile) {
    DataArea area(4096, 4096, true);
    definition->WriteDescription(&area, 0);
    char const* typeName = nameOf(definition->GetName());
    TemporaryBuffer name(std::strlen(typeName) + 32);
    std::snprintf(name.GetBuffer(), name.GetSize(), "%s=%08lx", typeName, definition->GetResourceType());
    AddDescriptionResource(resourceFile, kTypeDescriptionType, name.GetBuffer(), typeName, &area);
}

}  // namespace

void AddDescriptionResource(RCResourceFile* resourceFile, unsigned long type, char const* name,
                            char const* hashedText, DataArea* area) {
    long hash = RCHash(hashedText, static_cast<int>(std::strlen(hashedText)));
    RCResource* resource = new RCResource(type, resourceFile->UniqueResId(type, static_cast<short>(hash)));
    resource->SetName(name);
    resource->SetFlags(kDescriptionFlags);
    area->PutChar(0);
    WithLockedDataArea locked(area);
    resource->AddContents(area->GetData(0), static_cast<long>(area->GetCursor()));
    // The id was free, so the file always takes the resource.
    resourceFile->AddResource(resource);
}

void AddTypeDescriptions(RCSymbolTable* symbolTable, RCResourceFile* resourceFile) {
    RCListIterator<RCDefinitionList> definitions(symbolTable->GetDefinitions());
    while (RCDefinitionListItem* definition = definitions.Next()) AddTypeDescription(definition->fValue, resourceFile);
}
