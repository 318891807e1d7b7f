// Expansion texts and their builder: views that share heap buffers by reference count, and a
// builder that keeps a view while the pieces run on in the same memory.

#include "PPExpansion.h"

#include <utility>

PP_CExpansionText PP_CExpansionText::Stable(PP_CTextReader text) {
    PP_CExpansionText stable;
    stable.fView = text;
    return stable;
}

PP_CExpansionText PP_CExpansionText::Copy(PP_CTextReader text) {
    PP_CExpansionText copy;
    auto buffer = std::make_shared<std::string>();
    if (text.Readable() != 0) buffer->append(text.GetReadPtr(), text.Readable());
    copy.fView = PP_CTextReader(buffer->data(), buffer->size());
    copy.fBuffer = std::move(buffer);
    return copy;
}

PP_CExpansionText PP_CExpansionText::Piece(PP_CTextReader stretch) const {
    PP_CExpansionText piece;
    piece.fBuffer = fBuffer;
    piece.fView = stretch;
    return piece;
}

void PP_CExpansionText::Detach() {
    if (fBuffer == nullptr && !IsEmpty()) *this = Copy(fView);
}

void PP_CExpansionBuilder::Add(PP_CExpansionText const& piece) {
    if (piece.IsEmpty()) return;
    if (fCopy == nullptr && fText.IsEmpty())
        fText = piece;
    else if (Continues(piece.fBuffer.get(), piece.fView))
        fText.fView = PP_CTextReader(fText.fView.GetReadPtr(), fText.fView.Readable() + piece.fView.Readable());
    else
        AddText(piece.fView);
}

// Called once per token while arguments are read, so the shared buffer is touched only when a
// text starts, never while it grows.
void PP_CExpansionBuilder::AddStretch(PP_CExpansionText const* source, PP_CTextReader stretch) {
    if (stretch.Readable() == 0) return;
    if (fCopy == nullptr && fText.IsEmpty())
        fText = source != nullptr ? source->Piece(stretch) : PP_CExpansionText::Stable(stretch);
    else if (Continues(source != nullptr ? source->fBuffer.get() : nullptr, stretch))
        fText.fView = PP_CTextReader(fText.fView.GetReadPtr(), fText.fView.Readable() + stretch.Readable());
    else
        AddText(stretch);
}

bool PP_CExpansionBuilder::Continues(std::string const* buffer, PP_CTextReader stretch) const {
    return fCopy == nullptr && buffer == fText.fBuffer.get() &&
           stretch.GetReadPtr() == fText.fView.GetReadPtr() + fText.fView.Readable();
}

void PP_CExpansionBuilder::AddChar(int c) { Copy().push_back(static_cast<char>(c)); }

void PP_CExpansionBuilder::AddText(PP_CTextReader text) {
    std::string& copy = Copy();
    if (text.Readable() != 0) copy.append(text.GetReadPtr(), text.Readable());
}

std::string& PP_CExpansionBuilder::Copy() {
    if (fCopy == nullptr) {
        fCopy = std::make_shared<std::string>();
        if (!fText.IsEmpty()) fCopy->append(fText.fView.GetReadPtr(), fText.fView.Readable());
        fText = PP_CExpansionText();
    }
    return *fCopy;
}

void PP_CExpansionBuilder::Detach() { fText.Detach(); }

PP_CExpansionText PP_CExpansionBuilder::Take() {
    PP_CExpansionText text = std::move(fText);
    if (fCopy != nullptr) {
        text.fView = PP_CTextReader(fCopy->data(), fCopy->size());
        text.fBuffer = std::move(fCopy);
    }
    fText = PP_CExpansionText();
    fCopy = nullptr;
    return text;
}
