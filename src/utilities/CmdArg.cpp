// The conversions of option values, on the words as the command line gives them.

#include "CmdArg.h"

#include <cstdarg>
#include <cstdio>

#include "UniqueNames.h"

bool CmdArg::GetNumber(char const* text, long* value) {
    return std::sscanf(text, "%li", value) == 1 || std::sscanf(text, "$%lx", value) == 1;
}

int CmdArg::GetOneOf(char const* text, ...) {
    va_list choices;
    va_start(choices, text);
    int found = -1;
    int index = 0;
    for (char const* choice = va_arg(choices, char const*); choice != nullptr;
         choice = va_arg(choices, char const*), ++index) {
        if (ustreql(choice, text)) {
            found = index;
            break;
        }
    }
    va_end(choices);
    return found;
}
