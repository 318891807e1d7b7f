// The preprocessor's fixed tables: message texts by code and the directive words.

#include "cpp5.h"

#include <cstring>
#include <iterator>

#include "PPCPP.h"
#include "PPScan.h"

namespace {

struct PoundName {
    char const* fName;
    unsigned long fLength;
    int fDirective;
};

// Sorted by name for the binary search.
constexpr PoundName kPoundNames[] = {
    {"define", 6, kPPDir_Define}, {"elif", 4, kPPDir_Elif},       {"else", 4, kPPDir_Else},
    {"endif", 5, kPPDir_Endif},   {"error", 5, kPPDir_Error},     {"if", 2, kPPDir_If},
    {"ifdef", 5, kPPDir_Ifdef},   {"ifndef", 6, kPPDir_Ifndef},   {"include", 7, kPPDir_Include},
    {"line", 4, kPPDir_Line},     {"pragma", 6, kPPDir_Pragma},   {"undef", 5, kPPDir_Undef},
};

} // namespace

int lookupPoundName(PP_CTextReader word) {
    long low = 0;
    long high = static_cast<long>(std::size(kPoundNames)) - 1;
    while (low <= high) {
        long middle = (low + high) / 2;
        PoundName const& row = kPoundNames[middle];
        long order = std::strncmp(word.GetReadPtr(), row.fName, word.Readable());
        if (order == 0)
            order = static_cast<long>(row.fLength) - static_cast<long>(word.Readable());
        if (order == 0)
            return row.fDirective;
        if (order < 0)
            high = middle - 1;
        else
            low = middle + 1;
    }
    return kPPScan_Ident;
}

char const* const PP_CPP::_sErrMsg[kPP_ErrMsgCount] = {
    "No error\n",
    "End of line in string\n",
    "End of file in string\n",
    "Too many characters in string\n",
    "\"0x\" without any digits following\n",
    "\"0\" with non-octal digits following\n",
    "looked like a number but it wasnt\n",
    "Unknown token\n",
    "\"#\" appearing other than beginning of line\n",
    "\"# xxx\" do not know what that token was\n",
    "\"#define xxx\" no identifier following #define\n",
    "\"#define name\" where name is not allowed to be defined\n",
    "\"#define name\" name exists and new defn != old defn (%s)\n",
    "\"#define name(xxx\" parameter name is bogus (%s)\n",
    "\"#define name(name xxx\" neither \",\" nor \")\" after name (%s)\n",
    "\"'#' must be followed by parameter\" (%s)\n",
    "\"'##' cannot be first or last token in macro replacement list\" (%s)\n",
    "\"#undef\" no identifier following #undef\n",
    "\"#undef %s\" the identifier cannot be undefined\n",
    "\"macro %s(...\" missing the closing \")\"\n",
    "\"macro %s(...\" fewer than expected arguments\n",
    "\"macro %s(...\" more than expected arguments\n",
    "\"defined(...\" missing macro name\n",
    "bad expression\n",
    "value/operator stack overflow: expression too complex\n",
    "Operator in incorrect context\n",
    "Unbalanced parenthese\n",
    "\":\" found with no leading \"?\"\n",
    "\"string\" found in expression\n",
    "No floating point expressions\n",
    "No assignment in expressions\n",
    "\"#include\" no file name following #include\n",
    "Could not open include file %s\n",
    "Bad filename passed to #include: %s\n",
    "\"#endif\" with no preceding #if/#ifdef/#ifndef\n",
    "\"#else\" with no preceding \"#if\"\n",
    "\"#elif\" with no preceding \"#if\"\n",
    "EOF while there is still an open \"#if\"\n",
    "Too many nested #if\n",
    "Bad UTF8 Signature\n",
    "Encoding should be kResourceUTF8Encoded because file has UTF8 Signature\n",
    "File does not have UTF8 Signature but it uses kResourceUTF8Encoded and JCCK locale. Please save file with UTF8 "
    "signature\n",
    "String contains invalid UTF8\n",
};
