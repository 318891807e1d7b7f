#include "RCNamedExpression.h"

#include "RCExpression.h"
#include "RCPtr.h"
#include "RCScanner.h"

namespace {

constexpr int kErrExpectedIdentifier = 32752;
constexpr int kErrExpectedEquals = 32749;
constexpr int kErrNotNumeric = 32741;

}  // namespace

RCNamedExpression::RCNamedExpression(UniqueStruct* name, RCExpression* value)
    : RCNamedListItem(name, value) {}

RCNamedExpression::~RCNamedExpression() { delete fValue; }

RCNamedExpression* RCNamedExpression::ParseNamedValue(RCScanner* scanner, RCExpression* defaultValue) {
    RCPtr<RCExpression> value(defaultValue);
    UniqueStruct* name = scanner->ScanName(kErrExpectedIdentifier);
    if (!name) return new RCNamedExpression(nullptr, nullptr);
    if (scanner->TokenType() == kPPScan_Assign || !value) {
        value = nullptr;
        if (scanner->Scan(kPPScan_Assign, kErrExpectedEquals))
            value = RCExpression::ParseExpression(scanner, -1);
    }
    if (!value) return new RCNamedExpression(nullptr, nullptr);
    return new RCNamedExpression(name, value.Release());
}

bool RCNamedExpression::IsNumber(RCScanner* scanner) {
    if (!fValue) return false;
    if (fValue->IsNumber()) return true;
    scanner->Error(kErrNotNumeric, 0);
    delete fValue;
    fValue = nullptr;
    return false;
}
