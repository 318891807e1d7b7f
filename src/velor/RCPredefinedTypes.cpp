// The table of predefined types and the payload statement behind each name. The resource type of
// a row need not spell its name: PNGAD and PNGRD are stored as 'PNGD' and 'PNGK'.
#include "RCPredefinedTypes.h"

#include "PPScan.h"
#include "RCDefinition.h"
#include "RCStatement_Bitmap.h"
#include "RCStatement_MultiString.h"
#include "RCSymTbl.h"
#include "UniqueNames.h"

namespace {

struct PredefinedType {
    char const* name;
    unsigned long resourceType;
};

constexpr PredefinedType sPreDefResTbl[] = {
    {"BITMAP", 0x424D4150},       // 'BMAP'
    {"PNGA", 0x504E4741},         // 'PNGA'
    {"PNGR", 0x504E4752},         // 'PNGR'
    {"PNGAD", 0x504E4744},        // 'PNGD'
    {"PNGRD", 0x504E474B},        // 'PNGK'
    {"PNGC", 0x504E4743},         // 'PNGC'
    {"ICNS", 0x69636E73},         // 'icns'
    {"MULTISTRING", 0x4D535452},  // 'MSTR'
};

}  // namespace

RCStatement* RCStatement::GetStatementFromName(UniqueStruct* name) {
    if (name == uniqueOf("BITMAP")) return new RCStatement_Bitmap;
    if (name == uniqueOf("MULTISTRING")) return new RCStatement_MultiString;
    return new RCStatement_ByteString(kPPScan_String, nullptr);
}

void EnterPredefinedTypes(RCSymbolTable* symbolTable) {
    for (PredefinedType const& type : sPreDefResTbl) {
        UniqueStruct* name = uniqueOf(type.name);
        symbolTable->AddDefinition(
            name, new RCDefinition(name, nullptr, RCStatement::GetStatementFromName(name), type.resourceType));
    }
}
