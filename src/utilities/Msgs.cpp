#include "Msgs.h"

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
    long id;
    char const* text;
};

// Ids 2400-2500: directories and include files; 1000-1008: the command line; 32763 and down: the
// resource language. Rows stay even where nothing raises their message, so numbers keep meaning.
ErrorString const gErrorStringTable[] = {
    {2400, "'%s' does not name a directory"},
    {2401, "... found '%s' in '%s'"},
    {2402, "Could not expand '%s'"},
    {2403, "Directory name %s does not end in ':'"},
    {2500, "IncFile::IncFile - Failure to create directory for '%s'"},
    {-108, "Out of memory"},
    {1000, "Unrecognized option '-%s'"},
    {1001, "Unrecognized argument '%s' to option '-%s'"},
    {1002, "Missing %d argument%s to option '-%s'"},
    {1003, "Non-numeric argument to option -%s: %s"},
    {1004, "*INTERNAL* -- String '%s' is not numeric"},
    {1005, "Argument to -%s has more than %d characters: %s"},
    {1006, "*INTERNAL* -- ResType %s has more than %d characters: %s"},
    {1007, "Recursive response file '%s'"},
    {1008, "Could not open response file '%s'"},
    {32763, "Error -- %s"},
    {32762, "Error looking for resource specification.  Need 'resource' or 'type'."},
    {32761, "Expected '{'."},
    {32760, "Type '%s' after 'as' has a base type which is ignored."},
    {32759, "Expected ','."},
    {32758, "Expected number."},
    {32757, "Expected '}' in type specification."},
    {32756, "Expected ';'."},
    {32755, "String truncated to %ld bytes."},
    {32754, "Expected string."},
    {32753, "Bad path trying to open '%s'."},
    {32752, "Expected identifier."},
    {32751, "Error in type specification."},
    {32750, "Expected ']'."},
    {32749, "Expected '='."},
    {32748, "Expected ':'."},
    {32747, "Character literal has more than four characters."},
    {32746, "Expected '('."},
    {32745, "Expected ')'."},
    {32744, "Unexpected error (%ld) trying to open '%s'."},
    {32743, "Expected '}'."},
    {32742, "Expected 'CHAR' or 'VIRTUAL'."},
    {32741, "Expression must be numeric."},
    {32740, "Width of %d is not in the range of [1, 32]."},
    {32739, "Wrong number of arguments for function."},
    {32738, "Type %s already defined."},
    {32737, "Fill specifiers only for word/long alignment."},
    {32736, "Not enough fill specifiers."},
    {32735, "Bad resource kind '%s'."},
    {32734, "Unevaluated expression is not on a byte boundary or byte size."},
    {32733, "Integer fill specifier valid only for align long."},
    {32732, "Expected 'case'."},
    {32731, "More than %ld elements specified for the array."},
    {32730, "Fewer than %ld elements specified for the array."},
    {32729, "Expected either '[' or identifer after 'array'."},
    {32728, "No 'case' statements in switch."},
    {32727, "Error in expression."},
    {32726, "Identifier '%s' does not name a string."},
    {32725, "Identifier '%s' does not name a numeric value."},
    {32724, "Identifier '%s' previously defined as a static variable."},
    {32723, "Unknown resource option '%s'."},
    {32722, "Expected ';' or '}'."},
    {32721, "Expected ',' or '}'."},
    {32720, "Base type must be the name of a previously defined type '%s'."},
    {32719, "Could not find matching case in switch."},
    {32718, "$$ArrayIndex() argument must be a name."},
    {32717, "$$CountOf() argument must be a name."},
    {32716, "Multi-string resource has no elements"},
    {32715, "Expected an identifier after keyword 'as'."},
    {32714, "Type identifier expected after 'type' keyword."},
    {32713, "Length specification <= 0. Assumed 1."},
    {32712, "Fill is larger than its container."},
    {32711, "Could not evaluate length expression for string."},
    {32710, "Missing keyword 'array' expected after 'wide'. Assumed."},
    {32709, "Expected 'nibble', 'byte', 'word' or 'long' after 'align'."},
    {32708, "Expected '[' after 'bitstring'."},
    {32707, "$$BitField width must be between 1 and 32. Assumed 1."},
    {32706, "Attempted seek in resource file failed. Fatal error."},
    {32705, "Too many parameters in nested type."},
    {32704, "Expected ',' or ')'."},
    {32703, "Failed to evaluate forward expression."},
    {32702, "Parameter expected between comma and right parenthesis."},
    {32701, "Expected 'nibble', 'byte', 'word' or 'long' after 'fill'."},
    {32700, "A base type cannot be defined on a range of IDs."},
    {32699, "Too many values.  The maximum is %d."},
    {32698, "Divide by zero."},
    {32697, "Syntax error in expression."},
    {32696, "Unexpected end of file."},
    {32695, "Out of memory."},
    {32694, "Comma or right parenthesis expected in parameter list."},
    {32693, "Type '%s' after 'as' is not a defined type."},
    {32692, "The type '%s' is not a subtype of '%s'."},
    {32691, "Custom type name expected, but '%s' found."},
    {32690, "Variable '%s' after set has not been declared."},
    {32689, "Label '%s' needs subscripts, but no '[' found."},
    {32688, "No match in string field for %s."},
    {32687, "Parameter '%s' is not a scalar label in type '%s'."},
    {32686, "Parameter '%s' does not label a constant field in '%s'."},
    {32685, "Tried to match a numeric value, but found '%s' instead."},
    {32684, "This multi-string resource is larger than 65,535 bytes."},
    {32683, "Failed to open the file '%s'."},
    {32682, "The value %ld is too big to fit in %ld bytes."},
    {32681, "The value %ld is too big to fit in %ld bits."},
    {32680, "String is too long (%ld > %ld)."},
    {32679, "Non-hex digit found in hex ($) string."},
    {32678, "Number of hex digits must be a multiple of 4."},
    {32677, "Number of hex digits must be even."},
    {32676, "Expected number, but '%s' found instead."},
    {32675, "Unknown #pragma (%*.s) is ignored."},
    {32674, "Array label '%s': too few indices."},
    {32673, "Array label '%s': not found"},
    {32672, "Label '%s' needs %ld subscripts. Found %ld."},
    {32671, "The bitmap file '%s' does not have the expected format."},
    {32670, "Array label '%s': index negative"},
    {32669, "Array label '%s': index out of bounds"},
    {32668, "$$ArrayIndex(%s), '%s' is an unknown array"},
    {32667, "Multi-string resource has duplicate string ids (%ld)."},
    {32666, "Label '%s' too deeply nested in arrays."},
    {32665, "Cannot concatenate normal/wide strings."},
    {32664, "Wide strings cannot be used here."},
    {32663, "Protected resource was not modified. Use -ov to overwrite."},
    {32662, "Expected first character to be '^'. Assumed."},
    {32661, "Too few arguments to function.  %d expected"},
    {32660, "Could not evaluate expression in 'set/auto/static %s = <expr>'"},
    {32659, "Name '%s' not previously defined as 'auto' or 'static'."},
    {32658, "Label '%s' previously defined."},
    {32657, "Numeric value of '%ld' is a known predefined resource."},
    {32656, "Type '%s' cannot be used as a resource because it has no resource type."},
    {32655, "Duplicate resource: (%08x)%d.  Using the first one."},
    {32654, "Double-byte and single-byte strings not compatible."},
    {32653, "Undefined name '%s'."},
    {32652, "Expected one of ',;}' in an array.  Did you forget a typename?"},
    {32651, "Operator '%s' cannot be used with floating point values"},
    {32650, "Floating point values must be aligned on four byte boundaries"},
};

constexpr int kErrorStringCount = sizeof gErrorStringTable / sizeof gErrorStringTable[0];
static_assert(kErrorStringCount == 129);

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
