// The frame guards: each opens its frame on construction and closes it, fixups and all, on destruction.

#include "RCBindDefinition.h"

#include "Assertion.h"
#include "RCBindings.h"
#include "RCBindings_Def.h"

namespace {

// Arrays and their elements exist only inside the frame of a type instance.
RCBindings_Def* requireFrame(RCBindings* env) {
    RCBindings_Def* frame = env->CurrentDefn();
    VELOR_ASSERT_TEXT("fEnv->fDef != 0", frame != nullptr);
    return frame;
}

} // namespace

RCBindDefinition::RCBindDefinition(RCScanner* scanner, RCBindings* env, RCDefinition* definition)
    : fScanner(scanner), fEnv(env) {
    fEnv->PushDefn(definition);
}

RCBindDefinition::~RCBindDefinition() {
    fEnv->PopDefn(fScanner);
}

RCBindArray::RCBindArray(RCBindings* env, UniqueStruct* name) : fEnv(env) {
    requireFrame(fEnv)->PushArray(name);
}

RCBindArray::~RCBindArray() {
    requireFrame(fEnv)->PopArray();
}

RCNewArrayElement::RCNewArrayElement(RCBindings* env) : fEnv(env) {
    requireFrame(fEnv)->PushArrayElement();
}

RCNewArrayElement::~RCNewArrayElement() {
    requireFrame(fEnv)->PopArrayElement();
}
