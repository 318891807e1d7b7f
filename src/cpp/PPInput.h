// The records of the preprocessor's input stack: each is a text reader with a link, so files
// and macro expansions are read the same way.

#ifndef PPINPUT_H
#define PPINPUT_H

#include "PPText.h"

struct PP_MacroLink;
struct RCScanner_FileInfo;

// One entry of the preprocessor's input stack: a file's text or the text of a macro expansion.
// Records are recycled by the memory manager, linked through fNext while on its free list.
class PP_CInput : public PP_CTextReader {
public:
    PP_CInput(char const* text, unsigned long length) : PP_CTextReader(text, length) {}

    PP_CInput* GetNext() const { return fNext; }
    void SetNext(PP_CInput* next) { fNext = next; }

    // The macros whose expansion produced this text; null for a file.
    PP_MacroLink* fMacroLink = nullptr;
    // The file record; null for macro text. This alone tells a file from an expansion.
    RCScanner_FileInfo* fFileInfo = nullptr;
    // The scanner's position in this input while another input lies on top of it.
    unsigned long fSavedLineno = 0;
    unsigned long fSavedCharPos = 0;

private:
    PP_CInput* fNext = nullptr;
};

#endif
