// Helpers that turn the words of a command line into option values.
#pragma once

// Parsing helpers for the values of command-line options.
class CmdArg {
public:
    // Reads a number written in C notation ("12", "0x1F", "017") or as "$1F"; returns whether
    // the text held one.
    static bool GetNumber(char const* text, long* value);
    // The index of the first of the null-terminated list of choices that equals the text without
    // regard to case, or -1.
    static int GetOneOf(char const* text, ...);
};
