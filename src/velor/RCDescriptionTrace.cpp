// Opening and closing of traced lists; the step of the indent is decided here and nowhere else.

#include "RCDescriptionTrace.h"

#include "Options.h"
#include "RCBindings.h"
#include "UniqueNames.h"

namespace {

constexpr int kIndentStep = 2;

DataArea* TraceArea(RCBindings* bindings) {
    return gOptions->GetWriteDescriptions() ? bindings->GetDescriptionArea() : nullptr;
}

}  // namespace

RCTraceScope::RCTraceScope(RCBindings* bindings, RCDescriptionKeyword keyword)
    : fBindings(bindings), fArea(TraceArea(bindings)) {
    Open(keyword);
}

RCTraceScope::RCTraceScope(RCBindings* bindings, RCDescriptionKeyword keyword, UniqueStruct* name)
    : RCTraceScope(bindings, TraceArea(bindings), keyword, name) {}

RCTraceScope::RCTraceScope(RCTraceScope const& parent, RCDescriptionKeyword keyword, UniqueStruct* name)
    : RCTraceScope(parent.fBindings, parent.fArea, keyword, name) {}

RCTraceScope::RCTraceScope(RCBindings* bindings, DataArea* area, RCDescriptionKeyword keyword, UniqueStruct* name)
    : fBindings(bindings), fArea(area) {
    Open(keyword);
    if (!fArea) return;
    writeText(fArea, nameOf(name));
    NewLine();
}

void RCTraceScope::Open(RCDescriptionKeyword keyword) {
    if (!fArea) return;
    writeHead(fArea, keyword);
    fBindings->IncrementDescriptionIndent(kIndentStep);
}

void RCTraceScope::Close() {
    fBindings->IncrementDescriptionIndent(-kIndentStep);
    writeChar(fArea, ')');
}

void RCTraceScope::WriteNewLine() const {
    newLineIndent(fArea, fBindings->GetDescriptionIndent());
}
