// The table from opening keyword to statement parser, searched in order; one row per keyword.

#include "RCStatementFactory.h"

#include "RCScanner.h"
#include "RCStatement_Align.h"
#include "RCStatement_Array.h"
#include "RCStatement_Assign.h"
#include "RCStatement_Auto.h"
#include "RCStatement_ByteString.h"
#include "RCStatement_Fill.h"
#include "RCStatement_Number.h"
#include "RCStatement_Static.h"
#include "RCStatement_Switch.h"

namespace {

RCStatement* ParseIntegerField(RCScanner* scanner) { return RCStatement_Number::ParseNumber(scanner, true); }
RCStatement* ParseRealField(RCScanner* scanner) { return RCStatement_Number::ParseNumber(scanner, false); }

struct FactoryRow {
    int fKeyword;
    RCStatementParser fParser;
};

constexpr FactoryRow kFactoryRows[] = {
    {kRCScan_Bitstring, ParseIntegerField},
    {kRCScan_Boolean, ParseIntegerField},
    {kRCScan_Byte, ParseIntegerField},
    {kRCScan_Integer, ParseIntegerField},
    {kRCScan_Longint, ParseIntegerField},
    {kRCScan_Double, ParseRealField},
    {kRCScan_Single, ParseRealField},
    {kRCScan_Align, RCStatement_Align::ParseAlign},
    {kRCScan_Array, RCStatement_Array::ParseArray},
    {kRCScan_Auto, RCStatement_Auto::ParseAuto},
    {kRCScan_Fill, RCStatement_Fill::ParseFill},
    {kRCScan_Set, RCStatement_Assign::ParseAssign},
    {kRCScan_Static, RCStatement_Static::ParseStatic},
    {kRCScan_Switch, RCStatement_Switch::ParseSwitch},
    {kRCScan_Char, RCStatement_ByteString::ParseByteString},
    {kRCScan_Cstring, RCStatement_ByteString::ParseByteString},
    {kRCScan_Icstring, RCStatement_ByteString::ParseByteString},
    {kRCScan_Ipstring, RCStatement_ByteString::ParseByteString},
    {kRCScan_Istring, RCStatement_ByteString::ParseByteString},
    {kRCScan_Iwstring, RCStatement_ByteString::ParseByteString},
    {kRCScan_Pstring, RCStatement_ByteString::ParseByteString},
    {kRCScan_String, RCStatement_ByteString::ParseByteString},
    {kRCScan_Wstring, RCStatement_ByteString::ParseByteString},
};

}  // namespace

RCStatementParser ParserForKeyword(int token) {
    for (FactoryRow const& row : kFactoryRows)
        if (row.fKeyword == token) return row.fParser;
    return nullptr;
}
