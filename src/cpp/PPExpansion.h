// The texts that macro expansion passes between its levels, and the builder that makes them.
//
// A text either views memory that outlives the whole expansion (an input's text, a macro body),
// or views a heap buffer that it shares with every other text made from part of it; the buffer
// goes with the last of them. So a nest of calls holds only the texts still in use, and a level
// whose result is, byte for byte, a stretch of the text it was given passes that stretch on
// without a copy: an argument of a call inside an argument is a view of the outer one.

#ifndef PPEXPANSION_H
#define PPEXPANSION_H

#include <memory>
#include <string>

#include "PPText.h"

// One text of an expansion: a view, with the shared buffer it lies in when it is not stable.
class PP_CExpansionText {
public:
    PP_CExpansionText() = default;

    // A view of memory that outlives the expansion.
    static PP_CExpansionText Stable(PP_CTextReader text);
    // A text of its own with a copy of the bytes.
    static PP_CExpansionText Copy(PP_CTextReader text);

    // A stretch of this text, or of the memory it views, sharing its buffer.
    PP_CExpansionText Piece(PP_CTextReader stretch) const;
    // Copies the bytes into a buffer of their own, for a view of memory about to go away.
    void Detach();

    PP_CTextReader Reader() const { return fView; }
    bool IsEmpty() const { return fView.Readable() == 0; }

private:
    friend class PP_CExpansionBuilder;

    std::shared_ptr<std::string const> fBuffer;  // null for a view of stable memory
    PP_CTextReader fView;
};

// Joins pieces into one text. While every piece continues the last one in the same memory the
// result stays a view; the first piece that does not, or a single character, starts a copy.
class PP_CExpansionBuilder {
public:
    void Add(PP_CExpansionText const& piece);
    // Adds a stretch of source, or of stable memory when source is null, without taking a copy
    // of source's buffer when the stretch continues the text so far.
    void AddStretch(PP_CExpansionText const* source, PP_CTextReader stretch);
    void AddChar(int c);
    void AddText(PP_CTextReader text);

    // The text so far.
    PP_CTextReader Reader() const { return fCopy ? PP_CTextReader(fCopy->data(), fCopy->size()) : fText.fView; }
    void Detach();
    // The text built; the builder is empty afterwards.
    PP_CExpansionText Take();

private:
    std::string& Copy();
    bool Continues(std::string const* buffer, PP_CTextReader stretch) const;

    PP_CExpansionText fText;
    std::shared_ptr<std::string> fCopy;  // the bytes once they no longer form one view
};

#endif
