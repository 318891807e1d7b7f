// Scope guards through which statements open and close the frame of a type instance, an array
// and one array element. Each needs the bindings to have a current frame, except for
// RCBindDefinition, which makes one.
#pragma once

class RCBindings;
class RCDefinition;
class RCScanner;
struct UniqueStruct;

// Opens the frame of a type instance for a scope; closing it patches the instance's fixups.
class RCBindDefinition {
public:
    RCBindDefinition(RCScanner* scanner, RCBindings* env, RCDefinition* definition);
    ~RCBindDefinition();

    RCBindDefinition(RCBindDefinition const&) = delete;
    RCBindDefinition& operator=(RCBindDefinition const&) = delete;

private:
    RCScanner* fScanner;
    RCBindings* fEnv;
};

// Opens an array for a scope; a null name is an unnamed array.
class RCBindArray {
public:
    RCBindArray(RCBindings* env, UniqueStruct* name);
    ~RCBindArray();

    RCBindArray(RCBindArray const&) = delete;
    RCBindArray& operator=(RCBindArray const&) = delete;

private:
    RCBindings* fEnv;
};

// Opens one element of the innermost open array for a scope.
class RCNewArrayElement {
public:
    explicit RCNewArrayElement(RCBindings* env);
    ~RCNewArrayElement();

    RCNewArrayElement(RCNewArrayElement const&) = delete;
    RCNewArrayElement& operator=(RCNewArrayElement const&) = delete;

private:
    RCBindings* fEnv;
};
