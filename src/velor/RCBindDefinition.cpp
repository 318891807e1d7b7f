#include "RCBindDefinition.h"

#include "RCBindings.h"
#include "RCBindings_Def.h"

RCBindDefinition::RCBindDefinition(RCScanner* scanner, RCBindings* env, RCDefinition* definition)
    : fScanner(scanner), fEnv(env) {
    fEnv->PushDefn(definition);
}

RCBindDefinition::~RCBindDefinition() {
    fEnv->PopDefn(fScanner);
}

RCBindArray::RCBindArray(RCBindings* env, UniqueStruct* name) : fEnv(env) {
    fEnv->RequireDefn()->PushArray(name);
}

RCBindArray::~RCBindArray() {
    fEnv->RequireDefn()->PopArray();
}

RCNewArrayElement::RCNewArrayElement(RCBindings* env) : fEnv(env) {
    fEnv->RequireDefn()->PushArrayElement();
}

RCNewArrayElement::~RCNewArrayElement() {
    fEnv->RequireDefn()->PopArrayElement();
}
