// Alignment of the output to a multiple of a size in bits; the bindings compute the padding.
#include "RCStatement_Align.h"

#include "Assertion.h"
#include "RCBindings.h"
#include "RCDescription.h"
#include "RCScanner.h"

namespace {

constexpr int kMsg_ExpectedAlignSize = 32709;

}  // namespace

RCStatement_Align::RCStatement_Align(int width) : fWidth(width) {}

RCStatement* RCStatement_Align::ParseAlign(RCScanner* aScanner) {
    VELOR_ASSERT(aScanner->TokenType() == kRCScan_Align);
    aScanner->NextToken();
    int width = ScanAlignSize(aScanner, kMsg_ExpectedAlignSize);
    return width == 0 ? nullptr : new RCStatement_Align(width);
}

bool RCStatement_Align::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    if (DescriptionsOn()) WriteAlign(bindings->GetDescriptionArea());
    // A padding that the bindings refuse, as one of more than 32 bits, has been reported there;
    // the statement itself still counts as laid.
    bindings->Align(scanner, static_cast<short>(fWidth));
    return true;
}

void RCStatement_Align::WriteDescription(DataArea* area, int) { WriteAlign(area); }

void RCStatement_Align::WriteAlign(DataArea* area) const {
    writeText(area, "(align ");
    writeNumber(area, static_cast<long>(fWidth));
    writeChar(area, ')');
}

bool RCStatement_Align::ConsumesInput() const { return false; }
