// RCStatement_Bitmap: the body of the predefined type BITMAP. Fed a file, it converts the file's
// bitmap into a pixel map resource; fed a value list, it is the plain byte string it derives from.
#pragma once

#include "RCStatement_ByteString.h"

class RCStatement_Bitmap : public RCStatement_ByteString {
public:
    RCStatement_Bitmap();

    // A file that is no bitmap of the accepted form makes no resource, and says nothing.
    bool CreateResource_File(RCBindings* bindings, RCScanner* scanner, PP_CInput* input) override;
    void WriteDescription(DataArea* area, int indent) override;
};
