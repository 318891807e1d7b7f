// The bitmap payload: the conversion itself lives in RCBitmapFile, over the bytes of the input.
#include "RCStatement_Bitmap.h"

#include "PPInput.h"
#include "RCBitmapFile.h"
#include "RCDescription.h"
#include "RCScanner.h"

RCStatement_Bitmap::RCStatement_Bitmap() : RCStatement_ByteString(kPPScan_String, nullptr) {}

bool RCStatement_Bitmap::CreateResource_File(RCBindings* bindings, RCScanner* scanner, PP_CInput* input) {
    return ConvertBitmapFile(*input, bindings, scanner);
}

void RCStatement_Bitmap::WriteDescription(DataArea* area, int) { writePayload(area, kDesc_Bitmap); }
