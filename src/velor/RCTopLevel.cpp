// One pass over the top-level tokens, dispatching on the keyword that opens each statement.

#include "RCTopLevel.h"

#include "AnsiCPPTool.h"
#include "MsgIds.h"
#include "RCDefinition.h"
#include "RCScanner.h"

void CompileTopLevel(RCScanner* scanner, PP_CMacroTable* macroTable, RCResourceFile* resourceFile,
                     RCCheckPoint checkPoint) {
    for (;;) {
        checkPoint();
        switch (scanner->TokenType()) {
        case kPPScan_EOF: return;
        case kPPScan_Semicolon: scanner->NextToken(); break;
        case kRCScan_Resource: RCDefinition::DoResource(scanner, resourceFile); break;
        case kRCScan_Type: RCDefinition::ParseDefinition(scanner); break;
        default:
            if (AnsiCPPTool::ParseEnumOrConst(scanner, macroTable)) break;
            scanner->Error(kMsg_NeedResourceOrType, 0);
            scanner->ScanUntil(kPPScan_Semicolon);
        }
    }
}
