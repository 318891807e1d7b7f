// The descriptions of types and instances: S-expression text for the description walker.
#pragma once

#include "RCNamedExpression.h"
#include "RCNamedValue.h"
#include "RCNumber.h"

class DataArea;
class RCExpression;
class RCResourceFile;
class RCSymbolTable;

// Writers of the text that describes a type or a compiled instance: an S-expression for a
// reader, indented for people. The reader skips all white space, so the blanks written here carry
// no meaning of their own.

// The words that open the lists of a description, one table for every writer and for the reader.
enum RCDescriptionKeyword : int {
    kDesc_Type,
    kDesc_Restype,
    kDesc_Super,
    kDesc_As,
    kDesc_Args,
    kDesc_Prog,
    kDesc_Null,
    kDesc_Bitstring,
    kDesc_Float,
    kDesc_String,
    kDesc_Value,
    kDesc_Length,
    kDesc_Oneof,
    kDesc_If,
    kDesc_Arrayref,
    kDesc_CountOf,
    kDesc_ArrayIndex,
    kDesc_Array,
    kDesc_Name,
    kDesc_Switch,
    kDesc_Case,
    kDesc_Align,
    kDesc_Fill,
    kDesc_Count,
    kDesc_Fillspec,
    kDesc_Label,
    kDesc_Static,
    kDesc_Auto,
    kDesc_Set,
    kDesc_Bitmap,
    kDesc_Multistring,
    kDesc_KeywordCount
};

// The resource types that hold descriptions: of types, and of compiled instances.
constexpr unsigned long kTypeDescriptionType = 0x46577444;      // 'FWtD'
constexpr unsigned long kInstanceDescriptionType = 0x46577244;  // 'FWrD'

char const* descriptionWord(RCDescriptionKeyword keyword);
// The head of a list: "(" and the keyword, with the blank that the keyword's row asks for.
void writeHead(DataArea* area, RCDescriptionKeyword keyword);
// The columns that a head takes, "(" and the word and a blank: the indent of what lines up behind it.
int headWidth(char const* word);
int headWidth(RCDescriptionKeyword keyword);

void writeChar(DataArea* area, char c);
// Writes nothing for a count below 1.
void writeBlanks(DataArea* area, int count);
void writeText(DataArea* area, char const* text);
void newLine(DataArea* area);
void newLineIndent(DataArea* area, int indent);
// An integer as its 64-bit unsigned value, so -1 prints as 18446744073709551615; a float with %g.
void writeNumber(DataArea* area, RCNumber const& number);
void writeNumber(DataArea* area, long number);
// The quoted form of a string: tab, line feed and backslash escaped, other unprintable bytes as a
// backslash and three octal digits. Quotes and parentheses stay as they are.
void writeString(DataArea* area, char const* text);
void writeString(DataArea* area, char const* bytes, unsigned long length);
// A keyword group around one expression: the head, as "(value ", the expression written at the
// given indent, and ")".
void writeExpressionGroup(DataArea* area, RCDescriptionKeyword head, RCExpression* expression, int indent);
// A group of named numbers: on a new line at the indent the head, then each entry as
// "(name number)" on a line of its own two deeper, then ")". An empty list writes nothing.
void writeNamedNumbers(DataArea* area, int indent, RCDescriptionKeyword head, RCNamedList<RCNamedValue>& values);
// The same with an expression for each entry, written two deeper than its entry. A string field
// puts a blank between the indent and the head.
void writeNamedExpressions(DataArea* area, int indent, bool blankBeforeHead, RCDescriptionKeyword head,
                           RCNamedExpressionList& values);
// The whole type description of a payload statement, "(prog (keyword))": its layout is fixed by
// the code behind it, so the text names the payload and nothing more.
void writePayload(DataArea* area, RCDescriptionKeyword payload);

// Stores a finished description as a resource of the given type, flagged 0x10: the text up to
// the area's cursor, ended by one zero byte that belongs to it. The id is the hash of hashedText,
// moved on to the next id that the type has free.
void AddDescriptionResource(RCResourceFile* resourceFile, unsigned long type, char const* name,
                            char const* hashedText, DataArea* area);
// One description per type of the table, in order of definition, named "type=restype".
void AddTypeDescriptions(RCSymbolTable* symbolTable, RCResourceFile* resourceFile);
