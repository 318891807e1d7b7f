// The instance description as it is traced during compilation: each statement that traces opens
// one list for the time it lays out its instance, and the list closes however the statement ends.
// While descriptions are off every call here writes nothing, so statements trace unconditionally.
#pragma once

#include "RCDescription.h"

class DataArea;
class RCBindings;
struct UniqueStruct;

// One open list of the trace: its head on construction, ")" on destruction, and the bindings'
// indent one step deeper in between, for the lines of its children. Whether a list is traced is
// decided when it opens, and a list nested in another follows its parent, so that a pragma met
// on the way never leaves a list open or closes one that was not opened.
class RCTraceScope {
public:
    RCTraceScope(RCBindings* bindings, RCDescriptionKeyword keyword);
    // A type instance: the head, the name, and a new line at the deeper indent.
    RCTraceScope(RCBindings* bindings, RCDescriptionKeyword keyword, UniqueStruct* name);
    RCTraceScope(RCTraceScope const& parent, RCDescriptionKeyword keyword, UniqueStruct* name);
    RCTraceScope(RCTraceScope const&) = delete;
    RCTraceScope& operator=(RCTraceScope const&) = delete;
    // Every field opens and closes a list, traced or not, so the test stays inline.
    ~RCTraceScope() {
        if (fArea) Close();
    }

    // Where the list's contents go, or null when it is not traced.
    DataArea* Area() const { return fArea; }
    // A new line at the current indent: before each child of a list, and behind a nested instance.
    void NewLine() const {
        if (fArea) WriteNewLine();
    }

private:
    void Close();
    void WriteNewLine() const;
    RCTraceScope(RCBindings* bindings, DataArea* area, RCDescriptionKeyword keyword, UniqueStruct* name);
    void Open(RCDescriptionKeyword keyword);

    RCBindings* fBindings;
    DataArea* fArea;
};
