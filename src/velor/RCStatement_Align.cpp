// Alignment of the output to a multiple of a size in bits; the bindings compute the padding.
#include "RCStatement_Align.h"

#include "Assertion.h"
#include "MsgIds.h"
#include "RCBindings.h"
#include "RCDescription.h"
#include "RCDescriptionTrace.h"
#include "RCScanner.h"

RCStatement_Align::RCStatement_Align(int width) : fWidth(width) {}

// align = "align" size-keyword
RCStatement* RCStatement_Align::ParseAlign(RCScanner* aScanner) {
    VELOR_ASSERT(aScanner->TokenType() == kRCScan_Align);
    aScanner->NextToken();
    int width = ScanAlignSize(aScanner, kMsg_ExpectedAlignSize);
    return width == 0 ? nullptr : new RCStatement_Align(width);
}

bool RCStatement_Align::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    {
        RCTraceScope trace(bindings, kDesc_Align);
        if (trace.Area()) writeNumber(trace.Area(), static_cast<long>(fWidth));
    }
    // A padding that the bindings refuse, as one of more than 32 bits, has been reported there;
    // the statement itself still counts as laid.
    bindings->Align(scanner, static_cast<short>(fWidth));
    return true;
}

void RCStatement_Align::WriteDescription(DataArea* area, int) {
    writeHead(area, kDesc_Align);
    writeNumber(area, static_cast<long>(fWidth));
    writeChar(area, ')');
}

bool RCStatement_Align::ConsumesInput() const { return false; }
