// The `type` statement's result: a named type, and the walk that lays out its instances.
#pragma once

#include "RCDescription.h"
#include "RCNamedValue.h"
#include "RCStatement.h"

class RCResourceFile;
class RCTraceScope;

// A named type: the statement tree of its body, its resource type, its base type and the class
// parameters it sets on that base. Owned by the symbol table and never changed once entered.
class RCDefinition : public RCStatement {
public:
    RCDefinition(UniqueStruct* name, RCDefinition* super, RCStatement* body, unsigned long resType);
    // A definition built on another type instead of a body of its own.
    RCDefinition(UniqueStruct* name, RCDefinition* super, RCDefinition* asType, unsigned long resType);
    ~RCDefinition() override;

    // Reads a `type` declaration and enters it in the symbol table; the current token is `type`.
    static void ParseDefinition(RCScanner* aScanner);
    // Reads a `resource` statement and adds the compiled resource to the file; the current token
    // is `resource`. Defined with the rest of that statement in RCResourceStatement.cpp.
    static bool DoResource(RCScanner* aScanner, RCResourceFile* resourceFile);

    bool CreateResource(RCBindings* bindings, RCScanner* scanner) override;
    bool CreateResource(RCBindings* bindings, RCScanner* scanner, RCNamedList<RCNamedValue>* parameters);
    // Reads the instance between the opening token, '{' or '(', and its closing partner.
    bool CreateResource(RCBindings* bindings, RCScanner* scanner, RCNamedList<RCNamedValue>* parameters,
                        int openToken);
    // Lays out one instance of the type, its base first, without any bracket around the values.
    bool CreateResource_Body(RCBindings* bindings, RCScanner* scanner, RCNamedList<RCNamedValue>* parameters);
    bool CreateResource_File(RCBindings* bindings, RCScanner* scanner, PP_CInput* input) override;
    void WriteDescription(DataArea* area, int indent) override;
    bool ConsumesInput() const override;

    // A definition is a subclass of itself and of every type along its chain of bases.
    bool IsSubClassOf(RCDefinition const* definition) const;
    void AddClassParameter(UniqueStruct* name, long value);

    UniqueStruct* GetName() const { return fName; }
    unsigned long GetResourceType() const { return fResType; }
    bool HasResourceType() const { return fHasResType; }
    bool IsBaseType() const { return fIsBaseType; }

private:
    RCDefinition(UniqueStruct* name, RCDefinition* super, unsigned long resType);

    // Read the clauses of a declaration behind its '(' and its ':'. False when the declaration
    // ends there, after its error was reported.
    static bool ParseResourceType(RCScanner* scanner, unsigned long& resType, bool& hasResType);
    static bool ParseBase(RCScanner* scanner, RCDefinition*& super, RCNamedList<RCNamedValue>& parameters);
    // Reads "name = number {, name = number} )" behind the '(' that follows a base type.
    static bool ParseClassParameters(RCScanner* scanner, RCNamedList<RCNamedValue>& parameters);
    // What lays out the instance: the body, or the type it is built on.
    RCStatement* Content() const;
    // One type instance in its own frame, with the class parameters assigned.
    bool CreateInstance(RCBindings* bindings, RCScanner* scanner, RCNamedList<RCNamedValue>* parameters);
    // The base's fields, then the body's or those of the type it is built on.
    bool CreateParts(RCBindings* bindings, RCScanner* scanner, RCNamedList<RCNamedValue>& parameters,
                     RCTraceScope const& trace);
    // A base or `as` instance, traced as "(keyword name ...)" inside the instance's own list.
    bool CreateNested(RCDescriptionKeyword keyword, RCDefinition* definition, RCBindings* bindings,
                      RCScanner* scanner, RCNamedList<RCNamedValue>& parameters, RCTraceScope const& trace);

    UniqueStruct* fName;
    RCDefinition* fSuper;
    RCStatement* fBody;
    RCDefinition* fAsType;
    unsigned long fResType;
    RCNamedList<RCNamedValue> fParameters;
    bool fHasResType;
    bool fIsBaseType;
};
