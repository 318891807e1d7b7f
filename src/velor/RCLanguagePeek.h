// The language and encoding of a resource's strings, read from the opening words of its values.
#pragma once

// What the opening words of a resource's value list say about the encoding of its strings. The
// language tag is the first word of the list; the encoding word is the first word of the line
// that follows it.
struct RCLanguagePeek {
    // The value for gCurrentLanguage: 0 for none, 1 to 4 for the double-byte languages, 5 and 6
    // for UTF-8 text with and without such a language.
    int language;
    // A language tag stood there, but the encoding word did not follow it.
    bool encodingWordMissing;
};

// Looks at the text from the start of the current token to the end of its input; never reads
// beyond `end`.
RCLanguagePeek PeekLanguage(char const* begin, char const* end);
