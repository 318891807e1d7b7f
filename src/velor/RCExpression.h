// RCExpression: the expression trees of the resource language.
//
// A parsed tree belongs to a type and serves every resource of it, so it is never changed:
// Reduce builds a new tree against the bindings of the current resource and tells whether the
// value is known now. A known value is evaluated and laid at once; an unknown one is kept, reduced,
// in a fixup of the current frame and evaluated when the type instance ends. The one change that
// Reduce makes is to mark an undefined value cell as defined, so that its name is reported once.
//
// The classes ending in _Env are bound to one resource's bindings; the parser never builds them
// and they never reach a description.
#pragma once

#include <cstddef>

#include "RCAlloc.h"
#include "RCByteString.h"
#include "RCDescription.h"
#include "RCNumber.h"
#include "RCPtr.h"

class DataArea;
class RCArray;
class RCArrayLabel;
class RCBindings;
class RCExpression_2;
class RCScanner;
class RCValueCell;
struct UniqueStruct;

// The `$$` functions by number: their keyword tokens counted from `$$ArrayIndex`.
enum RCFunction : int {
    kFunction_ArrayIndex,
    kFunction_BitField,
    kFunction_Byte,
    kFunction_CountOf,
    kFunction_Long,
    kFunction_Word,
};

// What the value of a tree depends on, from least to most: nothing (integer literals and their
// operators), the output alone (the $$ functions that read it, over such operands), or the
// bindings at large (names, labels, arrays, and every float, whose operators may report).
enum class RCDependence { kNothing, kOutput, kBindings };

// Every field's value is a tree of nodes made and dropped per resource, so nodes are recycled.
class RCExpression : public RCRecycled {
public:
    RCExpression() = default;
    RCExpression(RCExpression const&) = delete;
    RCExpression& operator=(RCExpression const&) = delete;
    virtual ~RCExpression();

    virtual bool IsNumber() const;
    virtual bool IsString() const;
    virtual bool IsName() const;
    // A clone that the caller destroys; only a string expression has one.
    virtual RCByteString AsString();
    // The string of a string expression, which keeps it; null for every other expression.
    virtual RCByteString const* StringValue() const;
    // The number of a number literal, which reduces to itself without a word; null for every
    // other expression.
    virtual RCNumber const* LiteralValue() const;
    // The node as a binary operator, or null.
    virtual RCExpression_2* AsBinary();
    virtual UniqueStruct* AsName();
    // A tree that depends on the output alone evaluates the same and says nothing, whether it is
    // evaluated as it stands or reduced first, and is never constant.
    virtual RCDependence Dependence() const;
    // A new tree owned by the caller; isConstant tells whether it can be evaluated now.
    virtual RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const = 0;
    virtual RCNumber Evaluate(RCScanner* scanner, RCBindings* bindings);
    virtual void WriteDescription(DataArea* area, int indent) = 0;

    // The parser. Each returns an owned tree, or null after a message. Outside callers pass -1.
    static RCExpression* ParseExpression(RCScanner* scanner, int minPriority);
    // A whole value of a value list, which may be a lone integer literal: that comes back in
    // literal, with tree left null; anything else comes back in tree, where operators over
    // literals are already folded when that says nothing. False after a message.
    static bool ParseValue(RCScanner* scanner, RCNumber& literal, RCPtr<RCExpression>& tree);
    static RCExpression* ParseTerm(RCScanner* scanner);
    static RCExpression* ParseString(RCScanner* scanner);
    static RCExpression* ParseFunction(RCScanner* scanner, int function);
    static RCExpression* ParseArrayRef(RCScanner* scanner, UniqueStruct* name);
    // Fills argv with at most max expressions; returns their count, or -1 after a message.
    static int ParseExprList(RCScanner* scanner, int max, RCExpression** argv);

    static RCExpression* Number(RCNumber const& number);
    static RCExpression* Number(long value);
    static RCExpression* Number(double value);
    // base + delta, taking ownership of base.
    static RCExpression* Increment(RCExpression* base, long delta);

private:
    static RCExpression* ParseConditional(RCScanner* scanner, RCPtr<RCExpression>& condition);
    static RCExpression* ParseOperators(RCScanner* scanner, RCPtr<RCExpression>& tree, int minPriority);
    static RCExpression* ParseNumericTerm(RCScanner* scanner, int token);
};

class RCExpression_Number : public RCExpression {
public:
    explicit RCExpression_Number(RCNumber const& number) : fNumber(number) {}

    bool IsNumber() const override;
    RCNumber const* LiteralValue() const override;
    RCDependence Dependence() const override;
    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    RCNumber Evaluate(RCScanner* scanner, RCBindings* bindings) override;
    void WriteDescription(DataArea* area, int indent) override;

private:
    RCNumber fNumber;
};

class RCExpression_String : public RCExpression {
public:
    // Keeps a clone of the string's bytes.
    explicit RCExpression_String(RCByteString const& string);
    ~RCExpression_String() override;

    // Takes over the string's storage, which the caller then no longer destroys.
    static RCExpression_String* Adopting(RCByteString const& string);

    bool IsString() const override;
    RCByteString AsString() override;
    RCByteString const* StringValue() const override;
    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    void WriteDescription(DataArea* area, int indent) override;

private:
    struct AdoptTag {};
    RCExpression_String(RCByteString const& string, AdoptTag) : fString(string) {}

    RCByteString fString;
};

// $$CountOf bound to the array of the current frame; the count is read when evaluated.
class RCExpression_CountOf_Env : public RCExpression {
public:
    RCExpression_CountOf_Env(RCBindings* bindings, UniqueStruct* name);

    bool IsNumber() const override;
    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    RCNumber Evaluate(RCScanner* scanner, RCBindings* bindings) override;
    void WriteDescription(DataArea* area, int indent) override;

private:
    RCArray* fArray;
};

// Evaluates by reducing first: the value exists only against bindings.
class RCExpression_Eval : public RCExpression {
public:
    RCNumber Evaluate(RCScanner* scanner, RCBindings* bindings) override;
};

class RCExpression_Value : public RCExpression_Eval {
public:
    explicit RCExpression_Value(RCValueCell* valueCell) : fValueCell(valueCell) {}

    bool IsNumber() const override;
    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    void WriteDescription(DataArea* area, int indent) override;

private:
    RCValueCell* fValueCell;
};

class RCExpression_Name : public RCExpression_Eval {
public:
    explicit RCExpression_Name(UniqueStruct* name) : fName(name) {}

    bool IsNumber() const override;
    bool IsName() const override;
    UniqueStruct* AsName() override;
    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    void WriteDescription(DataArea* area, int indent) override;

private:
    UniqueStruct* fName;
};

// A unary operator, by its token: !, ~ or -.
class RCExpression_1 : public RCExpression_Eval {
public:
    RCExpression_1(int op, RCExpression* operand) : fOperator(op), fOperand(operand) {}

    bool IsNumber() const override;
    RCDependence Dependence() const override;
    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    RCNumber Evaluate(RCScanner* scanner, RCBindings* bindings) override;
    void WriteDescription(DataArea* area, int indent) override;

private:
    int fOperator;
    RCPtr<RCExpression> fOperand;
};

// A binary operator, by its token.
class RCExpression_2 final : public RCExpression_Eval {
public:
    RCExpression_2(int op, RCExpression* left, RCExpression* right) : fOperator(op), fLeft(left), fRight(right) {}
    ~RCExpression_2() override;

    RCExpression_2* AsBinary() override;
    bool IsNumber() const override;
    RCDependence Dependence() const override;
    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    RCNumber Evaluate(RCScanner* scanner, RCBindings* bindings) override;
    void WriteDescription(DataArea* area, int indent) override;

private:
    class LeftSpine;

    int fOperator;
    RCPtr<RCExpression> fLeft;
    RCPtr<RCExpression> fRight;
};

// condition ? then : else.
class RCExpression_3 : public RCExpression_Eval {
public:
    RCExpression_3(RCExpression* condition, RCExpression* thenPart, RCExpression* elsePart)
        : fCondition(condition), fThen(thenPart), fElse(elsePart) {}

    bool IsNumber() const override;
    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    RCNumber Evaluate(RCScanner* scanner, RCBindings* bindings) override;
    void WriteDescription(DataArea* area, int indent) override;

private:
    RCPtr<RCExpression> fCondition;
    RCPtr<RCExpression> fThen;
    RCPtr<RCExpression> fElse;
};

// A node over a list of owned arguments: a $$ function or the subscripts of a label reference.
class RCExpression_MultipleArgs : public RCExpression_Eval {
public:
    // Takes over the argc expressions of argv.
    RCExpression_MultipleArgs(int function, int argc, RCExpression** argv);
    ~RCExpression_MultipleArgs() override;

    bool IsNumber() const override;

protected:
    // Reduces every argument into argv, which holds room for argc; true if all were constant.
    bool ReduceArgv(RCScanner* scanner, RCBindings* bindings, int argc, RCExpression** argv) const;
    void WriteArguments(DataArea* area, int indent) const;

    int fFunction;
    int fArgc;
    RCExpression** fArgv;
    bool fAllNumbers;

private:
    static RCExpression** NewArgv(int argc);
    static std::size_t ArgvBytes(int argc);
};

// $$BitField, $$Byte, $$Long and $$Word: they read the output, so they are always deferred.
class RCExpression_Function : public RCExpression_MultipleArgs {
public:
    RCExpression_Function(int function, int argc, RCExpression** argv)
        : RCExpression_MultipleArgs(function, argc, argv) {}

    RCDependence Dependence() const override;
    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    RCNumber Evaluate(RCScanner* scanner, RCBindings* bindings) override;
    void WriteDescription(DataArea* area, int indent) override;
};

// name[subscripts...] as parsed.
class RCExpression_ArrayLabel : public RCExpression_MultipleArgs {
public:
    RCExpression_ArrayLabel(UniqueStruct* name, int argc, RCExpression** argv)
        : RCExpression_MultipleArgs(0, argc, argv), fName(name) {}

    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    void WriteDescription(DataArea* area, int indent) override;

private:
    UniqueStruct* fName;
};

// name[subscripts...] bound to the label's position table in the current frame.
class RCExpression_ArrayLabel_Env : public RCExpression_MultipleArgs {
public:
    RCExpression_ArrayLabel_Env(RCBindings* bindings, UniqueStruct* name, int argc, RCExpression** argv);
    RCExpression_ArrayLabel_Env(UniqueStruct* name, RCArrayLabel* arrayLabel, int argc, RCExpression** argv)
        : RCExpression_MultipleArgs(0, argc, argv), fName(name), fArrayLabel(arrayLabel) {}

    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    RCNumber Evaluate(RCScanner* scanner, RCBindings* bindings) override;
    void WriteDescription(DataArea* area, int indent) override;

private:
    UniqueStruct* fName;
    RCArrayLabel* fArrayLabel;
};

// $$CountOf and $$ArrayIndex: a function of an array, which the parser takes by name.
class RCExpression_ArrayFunction : public RCExpression_Eval {
public:
    explicit RCExpression_ArrayFunction(UniqueStruct* name) : fName(name) {}

    bool IsNumber() const override;

protected:
    // "(keyword name)".
    void WriteNamedForm(DataArea* area, RCDescriptionKeyword keyword) const;

    UniqueStruct* fName;
};

// $$CountOf is deferred: the count is final only when the type instance ends.
class RCExpression_CountOf : public RCExpression_ArrayFunction {
public:
    explicit RCExpression_CountOf(UniqueStruct* name) : RCExpression_ArrayFunction(name) {}

    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    void WriteDescription(DataArea* area, int indent) override;
};

// $$ArrayIndex takes the index of the open array at once; it never defers.
class RCExpression_ArrayIndex : public RCExpression_ArrayFunction {
public:
    explicit RCExpression_ArrayIndex(UniqueStruct* name) : RCExpression_ArrayFunction(name) {}

    RCExpression* Reduce(RCScanner* scanner, RCBindings* bindings, bool& isConstant) const override;
    void WriteDescription(DataArea* area, int indent) override;
};
