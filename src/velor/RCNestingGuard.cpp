// A refused level still counts until its guard ends, so every level taken is given back once.

#include "RCNestingGuard.h"

#include "RCScanner.h"

bool RCNestingGuard::Refuse(RCScanner* scanner) {
    scanner->Error(fNesting.fMessage, 0);
    return false;
}
