// The message table and the one path every message takes to the standard error stream.

#include "Msgs.h"

#include "MsgIds.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

unsigned char Msgs::fgDiagMask = kWarning | kError | kFatal | kNote;
char const* Msgs::fgProgname = "";
bool Msgs::fgTickTock = true;
uint32_t Msgs::fgErrorCount = 0;
uint32_t Msgs::fgWarningCount = 0;
bool Msgs::fgThrowOnExit = false;
volatile std::sig_atomic_t Msgs::fgInterrupted = false;

namespace {

struct ErrorString {
    MsgId id;
    char const* text;
};

// One row per MsgId, in the order of their numbers within each group.
ErrorString const gErrorStringTable[] = {
    {kMsg_NotADirectory, "'%s' does not name a directory"},
    {kMsg_FoundIncludeFile, "... found '%s' in '%s'"},
    {kMsg_CannotExpandName, "Could not expand '%s'"},
    {kMsg_DirectoryNameWithoutColon, "Directory name %s does not end in ':'"},
    {kMsg_CannotCreateDirectory, "IncFile::IncFile - Failure to create directory for '%s'"},
    {kMsg_SystemOutOfMemory, "Out of memory"},
    {kMsg_UnrecognizedOption, "Unrecognized option '-%s'"},
    {kMsg_UnrecognizedArgument, "Unrecognized argument '%s' to option '-%s'"},
    {kMsg_MissingArguments, "Missing %d argument%s to option '-%s'"},
    {kMsg_NonNumericArgument, "Non-numeric argument to option -%s: %s"},
    {kMsg_StringNotNumeric, "*INTERNAL* -- String '%s' is not numeric"},
    {kMsg_ArgumentTooLong, "Argument to -%s has more than %d characters: %s"},
    {kMsg_ResTypeTooLong, "*INTERNAL* -- ResType %s has more than %d characters: %s"},
    {kMsg_RecursiveResponseFile, "Recursive response file '%s'"},
    {kMsg_CannotOpenResponseFile, "Could not open response file '%s'"},
    {kMsg_GeneralError, "Error -- %s"},
    {kMsg_NeedResourceOrType, "Error looking for resource specification.  Need 'resource' or 'type'."},
    {kMsg_ExpectedLCurly, "Expected '{'."},
    {kMsg_AsTypeBaseIgnored, "Type '%s' after 'as' has a base type which is ignored."},
    {kMsg_ExpectedComma, "Expected ','."},
    {kMsg_ExpectedNumber, "Expected number."},
    {kMsg_ExpectedRCurlyInType, "Expected '}' in type specification."},
    {kMsg_ExpectedSemicolon, "Expected ';'."},
    {kMsg_StringTruncated, "String truncated to %ld bytes."},
    {kMsg_ExpectedString, "Expected string."},
    {kMsg_BadPath, "Bad path trying to open '%s'."},
    {kMsg_ExpectedIdentifier, "Expected identifier."},
    {kMsg_TypeSpecificationError, "Error in type specification."},
    {kMsg_ExpectedRBracket, "Expected ']'."},
    {kMsg_ExpectedEquals, "Expected '='."},
    {kMsg_ExpectedColon, "Expected ':'."},
    {kMsg_TooManyCharacters, "Character literal has more than four characters."},
    {kMsg_ExpectedLParen, "Expected '('."},
    {kMsg_ExpectedRParen, "Expected ')'."},
    {kMsg_UnexpectedOpenError, "Unexpected error (%ld) trying to open '%s'."},
    {kMsg_ExpectedRCurly, "Expected '}'."},
    {kMsg_ExpectedCharOrVirtual, "Expected 'CHAR' or 'VIRTUAL'."},
    {kMsg_NotNumeric, "Expression must be numeric."},
    {kMsg_BadWidth, "Width of %d is not in the range of [1, 32]."},
    {kMsg_WrongArgumentCount, "Wrong number of arguments for function."},
    {kMsg_TypeAlreadyDefined, "Type %s already defined."},
    {kMsg_FillOnlyForWordOrLong, "Fill specifiers only for word/long alignment."},
    {kMsg_NotEnoughFillSpecifiers, "Not enough fill specifiers."},
    {kMsg_BadResourceKind, "Bad resource kind '%s'."},
    {kMsg_UnevaluatedNotOnByte, "Unevaluated expression is not on a byte boundary or byte size."},
    {kMsg_IntegerFillOnlyForLong, "Integer fill specifier valid only for align long."},
    {kMsg_ExpectedCase, "Expected 'case'."},
    {kMsg_TooManyElements, "More than %ld elements specified for the array."},
    {kMsg_TooFewElements, "Fewer than %ld elements specified for the array."},
    {kMsg_ExpectedBracketOrNameAfterArray, "Expected either '[' or identifer after 'array'."},
    {kMsg_NoCasesInSwitch, "No 'case' statements in switch."},
    {kMsg_ExpressionError, "Error in expression."},
    {kMsg_NotAStringName, "Identifier '%s' does not name a string."},
    {kMsg_NotANumericName, "Identifier '%s' does not name a numeric value."},
    {kMsg_PreviouslyStatic, "Identifier '%s' previously defined as a static variable."},
    {kMsg_UnknownResourceOption, "Unknown resource option '%s'."},
    {kMsg_ExpectedSemicolonOrRCurly, "Expected ';' or '}'."},
    {kMsg_ExpectedCommaOrRCurly, "Expected ',' or '}'."},
    {kMsg_BaseTypeNotDefined, "Base type must be the name of a previously defined type '%s'."},
    {kMsg_NoMatchingCase, "Could not find matching case in switch."},
    {kMsg_ArrayIndexNeedsName, "$$ArrayIndex() argument must be a name."},
    {kMsg_CountOfNeedsName, "$$CountOf() argument must be a name."},
    {kMsg_MultiStringEmpty, "Multi-string resource has no elements"},
    {kMsg_ExpectedIdentifierAfterAs, "Expected an identifier after keyword 'as'."},
    {kMsg_ExpectedTypeIdentifier, "Type identifier expected after 'type' keyword."},
    {kMsg_LengthNotPositive, "Length specification <= 0. Assumed 1."},
    {kMsg_FillLargerThanContainer, "Fill is larger than its container."},
    {kMsg_StringLengthNotEvaluated, "Could not evaluate length expression for string."},
    {kMsg_MissingArrayAfterWide, "Missing keyword 'array' expected after 'wide'. Assumed."},
    {kMsg_ExpectedAlignSize, "Expected 'nibble', 'byte', 'word' or 'long' after 'align'."},
    {kMsg_ExpectedBracketAfterBitstring, "Expected '[' after 'bitstring'."},
    {kMsg_BitFieldWidth, "$$BitField width must be between 1 and 32. Assumed 1."},
    {kMsg_SeekFailed, "Attempted seek in resource file failed. Fatal error."},
    {kMsg_TooManyParameters, "Too many parameters in nested type."},
    {kMsg_ExpectedCommaOrRParen, "Expected ',' or ')'."},
    {kMsg_ForwardExpressionFailed, "Failed to evaluate forward expression."},
    {kMsg_MissingParameter, "Parameter expected between comma and right parenthesis."},
    {kMsg_ExpectedFillSize, "Expected 'nibble', 'byte', 'word' or 'long' after 'fill'."},
    {kMsg_BaseTypeOnIdRange, "A base type cannot be defined on a range of IDs."},
    {kMsg_TooManyValues, "Too many values.  The maximum is %d."},
    {kMsg_DivideByZero, "Divide by zero."},
    {kMsg_SyntaxError, "Syntax error in expression."},
    {kMsg_UnexpectedEndOfFile, "Unexpected end of file."},
    {kMsg_OutOfMemory, "Out of memory."},
    {kMsg_ParameterListSeparator, "Comma or right parenthesis expected in parameter list."},
    {kMsg_AsTypeNotDefined, "Type '%s' after 'as' is not a defined type."},
    {kMsg_NotASubtype, "The type '%s' is not a subtype of '%s'."},
    {kMsg_ExpectedCustomTypeName, "Custom type name expected, but '%s' found."},
    {kMsg_SetVariableNotDeclared, "Variable '%s' after set has not been declared."},
    {kMsg_LabelNeedsSubscripts, "Label '%s' needs subscripts, but no '[' found."},
    {kMsg_NoStringMatch, "No match in string field for %s."},
    {kMsg_ParameterNotScalarLabel, "Parameter '%s' is not a scalar label in type '%s'."},
    {kMsg_ParameterNotConstantField, "Parameter '%s' does not label a constant field in '%s'."},
    {kMsg_ExpectedNumericValue, "Tried to match a numeric value, but found '%s' instead."},
    {kMsg_MultiStringTooLarge, "This multi-string resource is larger than 65,535 bytes."},
    {kMsg_CannotOpenFile, "Failed to open the file '%s'."},
    {kMsg_ValueTooBigForBytes, "The value %ld is too big to fit in %ld bytes."},
    {kMsg_ValueTooBigForBits, "The value %ld is too big to fit in %ld bits."},
    {kMsg_StringTooLong, "String is too long (%ld > %ld)."},
    {kMsg_NonHexDigit, "Non-hex digit found in hex ($) string."},
    {kMsg_PartialHexGroup, "Number of hex digits must be a multiple of 4."},
    {kMsg_OddHexDigits, "Number of hex digits must be even."},
    {kMsg_ExpectedNumberFound, "Expected number, but '%s' found instead."},
    {kMsg_UnknownPragma, "Unknown #pragma (%*.s) is ignored."},
    {kMsg_TooFewIndices, "Array label '%s': too few indices."},
    {kMsg_ArrayLabelNotFound, "Array label '%s': not found"},
    {kMsg_WrongSubscriptCount, "Label '%s' needs %ld subscripts. Found %ld."},
    {kMsg_BadBitmapFile, "The bitmap file '%s' does not have the expected format."},
    {kMsg_IndexNegative, "Array label '%s': index negative"},
    {kMsg_IndexOutOfBounds, "Array label '%s': index out of bounds"},
    {kMsg_UnknownArray, "$$ArrayIndex(%s), '%s' is an unknown array"},
    {kMsg_DuplicateStringIds, "Multi-string resource has duplicate string ids (%ld)."},
    {kMsg_LabelTooDeep, "Label '%s' too deeply nested in arrays."},
    {kMsg_MixedStrings, "Cannot concatenate normal/wide strings."},
    {kMsg_WideStringNotAllowed, "Wide strings cannot be used here."},
    {kMsg_ProtectedResource, "Protected resource was not modified. Use -ov to overwrite."},
    {kMsg_ExpectedCaret, "Expected first character to be '^'. Assumed."},
    {kMsg_TooFewArguments, "Too few arguments to function.  %d expected"},
    {kMsg_CannotEvaluateAssignment, "Could not evaluate expression in 'set/auto/static %s = <expr>'"},
    {kMsg_NotAutoOrStatic, "Name '%s' not previously defined as 'auto' or 'static'."},
    {kMsg_LabelDefinedTwice, "Label '%s' previously defined."},
    {kMsg_PredefinedResourceNumber, "Numeric value of '%ld' is a known predefined resource."},
    {kMsg_NoResourceType, "Type '%s' cannot be used as a resource because it has no resource type."},
    {kMsg_DuplicateResource, "Duplicate resource: (%08x)%d.  Using the first one."},
    {kMsg_StringsNotCompatible, "Double-byte and single-byte strings not compatible."},
    {kMsg_UndefinedName, "Undefined name '%s'."},
    {kMsg_ArrayMissingTypename, "Expected one of ',;}' in an array.  Did you forget a typename?"},
    {kMsg_NoFloatOperator, "Operator '%s' cannot be used with floating point values"},
    {kMsg_FloatNotAligned, "Floating point values must be aligned on four byte boundaries"},
};

constexpr int kMessageBufferSize = 512;

// The label after "# ": only one of the three counted kinds may be present for a word to show.
char const* KindLabel(unsigned char mask) {
    switch (mask & (Msgs::kWarning | Msgs::kError | Msgs::kFatal)) {
        case Msgs::kWarning: return "Warning: ";
        case Msgs::kError: return "Error: ";
        case Msgs::kFatal: return "Fatal error: ";
        default: return "";
    }
}

}  // namespace

void Msgs::Display(unsigned char mask, char const* format, ...) {
    va_list args;
    va_start(args, format);
    VDisplay(mask, args, format);
    va_end(args);
}

void Msgs::Display(unsigned char mask, int id, ...) {
    va_list args;
    va_start(args, id);
    VDisplay(mask, args, id);
    va_end(args);
}

void Msgs::VDisplay(unsigned char mask, va_list args, char const* format) {
    if ((mask & fgDiagMask) != 0) {
        std::fflush(stdout);
        if (format != nullptr) {
            if ((mask & (kWarning | kError | kFatal | kNote)) != 0) std::fputs("# ", stderr);
            if ((mask & kSilent) == 0) std::fputs(KindLabel(mask), stderr);
            std::vfprintf(stderr, format, args);
        }
    }
    IncrementErrorCount(mask);
}

// Unlike the free-form form, a numbered message that does not show is not counted either:
// "-w" thus hides numbered warnings from the count but not free-form ones.
void Msgs::VDisplay(unsigned char mask, va_list args, int id) {
    if ((mask & fgDiagMask) == 0) return;
    if (id < 0) {
        SysErr(mask, id);
        return;
    }
    char text[kMessageBufferSize];
    VDisplay(mask, args, GetErrorFileText(id, text, sizeof text));
    std::fputc('\n', stderr);
}

char* Msgs::GetErrorFileText(long id, char* buffer, int size) {
    for (ErrorString const& row : gErrorStringTable) {
        if (row.id == id) {
            std::snprintf(buffer, size, "%s", row.text);
            return buffer;
        }
    }
    std::snprintf(buffer, size, "Message %ld.  Error string not found in VELOR error string table", id);
    return buffer;
}

void Msgs::SysErr(unsigned char mask, long code) {
    std::fprintf(stderr, "# SysErr %d\n", static_cast<int>(code));
    IncrementErrorCount(mask);
}

void Msgs::IncrementErrorCount(unsigned char mask) {
    if ((mask & kSilent) != 0) return;
    if ((mask & kError) != 0) ++fgErrorCount;
    if ((mask & kWarning) != 0) ++fgWarningCount;
    if ((mask & kFatal) != 0) {
        std::fprintf(stderr, "\n%s - Execution terminated!\n", fgProgname);
        Exit(1);
    }
}

void Msgs::ErrorCheck() { ErrorCheck(""); }

void Msgs::ErrorCheck(char const* format, ...) {
    if (fgErrorCount != 0) {
        va_list args;
        va_start(args, format);
        VDisplay(kFatal, args, format);
        va_end(args);
    }
    CheckInterrupted();
}

void Msgs::CheckInterrupted() {
    if (fgInterrupted) CheckInterrupted("");
}

void Msgs::CheckInterrupted(char const* format, ...) {
    if (!fgInterrupted) return;
    va_list args;
    va_start(args, format);
    VDisplay(kFatal, args, format);
    va_end(args);
}

void Msgs::Exit(int code) {
    if (fgThrowOnExit) throw Exception(code);
    std::exit(code);
}

bool Msgs::ThrowOnExit(bool throwOnExit) {
    bool previous = fgThrowOnExit;
    fgThrowOnExit = throwOnExit;
    return previous;
}

void Msgs::Spin() {
    if (fgTickTock) InnerSpin();
}

void Msgs::InnerSpin() { fgTickTock = false; }
