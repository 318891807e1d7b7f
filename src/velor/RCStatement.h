// Statement trees: the nodes a type body is parsed into once, and walked per resource.
#pragma once

#include <cstddef>

#include "RCNestingGuard.h"
#include "RCNumber.h"
#include "RCPtr.h"
#include "RCScope.h"

class DataArea;
class PP_CInput;
class RCBindings;
class RCExpression;
class RCScanner;
struct RCByteString;
struct UniqueStruct;

// One node of a type body. A type is parsed once into a tree of these; the tree is then walked once
// per resource of that type, each node reading its own values from the resource's value list and
// adding bits to the bindings. The tree itself never changes after parsing: every per-instance
// effect lives in the bindings, which is what lets one tree serve all resources of its type.
class RCStatement {
public:
    virtual ~RCStatement() = default;

    // Consumes one instance of this statement from the value list and emits its bits.
    virtual bool CreateResource(RCBindings* bindings, RCScanner* scanner) = 0;
    // Produces the instance from a whole input file instead of a value list: by default the
    // bytes of the file, unchanged.
    virtual bool CreateResource_File(RCBindings* bindings, RCScanner* scanner, PP_CInput* input);
    virtual void WriteDescription(DataArea* area, int indent) = 0;
    // The width in bits that a label standing on this statement records.
    virtual char LabelWidth();
    // True if CreateResource reads tokens from the value list. Must not change after construction:
    // lists cache the answer of their children.
    virtual bool ConsumesInput() const = 0;

    static void* operator new(std::size_t size);
    static void operator delete(void* block);

    // One statement with its modifiers and terminator, or null after an error was reported.
    static RCStatement* ParseStatement(RCScanner* scanner);
    // A whole braced body; the current token must be '{'.
    static RCStatement* ParseCompound(RCScanner* scanner);
    // The payload statement behind a predefined type's name: a new bitmap converter for BITMAP,
    // a multi-string table for MULTISTRING, and a plain byte string for every other name.
    static RCStatement* GetStatementFromName(UniqueStruct* name);

    // Consumes the current token if it is `token` and returns it; otherwise returns kNoKeyword.
    static int ScanKeyword(RCScanner* scanner, int token);
    // Consumes a radix word (binary, decimal, hex, literal, octal) and returns it, or kNoKeyword.
    static int ScanRadix(RCScanner* scanner);
    // An owned numeric expression, or null after an error was reported.
    static RCExpression* ScanNumber(RCScanner* scanner);
    // A numeric value of a value list: one known from literals alone comes back in literal, with
    // tree left null, and any other expression in tree. False after an error was reported.
    static bool ScanNumber(RCScanner* scanner, RCNumber& literal, RCPtr<RCExpression>& tree);
    // An owned string expression, or null after an error was reported.
    static RCExpression* ScanString(RCScanner* scanner);
    // A numeric expression followed by ']'; the expression is returned even if the bracket is not
    // where it belongs.
    static RCExpression* ScanLength(RCScanner* scanner);
    // Takes the separator behind a value of the value list: ';', else ','. At most one belongs to
    // the value; a second one is left for the next field.
    static void ScanValueSeparator(RCScanner* scanner);
    // Evaluates an expression while a type is parsed, with no resource to refer to.
    static long EvalNumber(RCExpression* expression, RCScanner* scanner);
    // The size in bits of the size keyword of an `align` or `fill`, which is consumed; any other
    // token is reported as errorId, left in place, and gives 0.
    static int ScanAlignSize(RCScanner* scanner, int errorId);

    // The bits that a value contributes to a part of `width` bits of a fill unit: its low bits,
    // unless it is not negative and has no bit below the width at all. Such a value comes back
    // whole and spills into the parts to its left; that is how fill values have always behaved.
    static long VerifyValue(RCScanner* scanner, long value, int width);

    // The token value behind the last keyword: what ScanKeyword and ScanRadix answer for "absent".
    static constexpr int kNoKeyword = 125;

protected:
    // A number of the value list, evaluated against the instance. False, with nothing stored,
    // when no numeric expression could be read.
    static bool CreateResource_Long(RCScanner* scanner, RCBindings* bindings, long* value);
    // A string of the value list, as a copy that the caller destroys. False, with the value
    // untouched, when no string expression could be read.
    static bool CreateResource_String(RCScanner* scanner, RCBindings* bindings, RCByteString* value);
};

// The recursion that type bodies drive on the machine stack: a statement nested in another while
// a type is parsed, and a type instance, array, switch or label while a resource is laid. All of
// them share one budget, since a resource may nest them in any mix.
extern RCNesting gTypeNesting;

// Owns its statements: destroying the list destroys them. Copying takes the items away from the
// source, so a list can be handed from a parser to the statement that keeps it.
class RCStatementList : public RCList<RCListItem<RCStatement*>> {
public:
    RCStatementList() = default;
    RCStatementList(RCStatementList& source);
    RCStatementList& operator=(RCStatementList&) = delete;
    ~RCStatementList();

    void Append(RCStatement* statement);
};

// A statement that does nothing and reads nothing: the body of an empty list, the target of a
// label that stands alone.
class RCStatement_Null : public RCStatement {
public:
    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    void WriteDescription(DataArea* area, int indent) override;
    bool ConsumesInput() const override;
};

// A list of statements. Whether the list reads from the value list is decided once, here, from
// its children.
class RCStatement_Multiple : public RCStatement {
public:
    explicit RCStatement_Multiple(RCStatementList& statements);

    bool ConsumesInput() const override;

protected:
    // Runs the statements once, in order, stopping at the first failure; traced as one "(prog".
    bool CreateProg(RCBindings* bindings, RCScanner* scanner);
    // "(prog" with each statement on a line of its own, two deeper than indent.
    void WriteProg(DataArea* area, int indent);

    RCStatementList fStatements;
    bool fConsumesInput;
};

// A statement list run once, in order.
class RCStatement_Compound : public RCStatement_Multiple {
public:
    explicit RCStatement_Compound(RCStatementList& statements);

    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    void WriteDescription(DataArea* area, int indent) override;

    // Parses the entries of a list up to, not including, its closing '}' or the next 'case'.
    // On entry the current token stands behind the opening brace or the case's ':'.
    static bool ParseCompound(RCScanner* scanner, RCStatementList& statements);
};
