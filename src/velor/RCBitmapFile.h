// RCBitmapFile: turns the bytes of a bitmap file into a pixel map resource: a 62-byte pixel map
// header, the pixel rows top row first, and a colour table built from the file's palette.
//
// The file's 8-byte size fields hold a big-endian 32-bit value in their first four bytes and the
// high half of a 64-bit number, low byte first, in the other four; 16-bit fields are big-endian.
// Only files in that form are accepted. Anything else, and any file too short for what its
// header announces, is refused without a message: the resource is then simply not made.
#pragma once

#include "PPText.h"

class RCBindings;
class RCScanner;

// Converts the whole file into the bindings; false, with no message, for a file that is refused.
// Nothing is read outside the file.
bool ConvertBitmapFile(PP_CTextReader file, RCBindings* bindings, RCScanner* scanner);
