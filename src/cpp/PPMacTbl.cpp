// The macro table as hash chains in the per-file arena; a name is found by its bytes. The chains
// are chosen by a hash that spreads similar names (M1, M2, ...) and double as the table fills, so
// that a lookup stays cheap however many macros a file defines; the short additive signature is
// kept on each entry as the cheap test before the byte comparison.

#include "PPMacTbl.h"

#include <cstring>
#include <new>

#include "Assertion.h"

PP_MacroBody::PP_MacroBody(PP_CMemoryManager* memory, char const* name, PP_MacroType type, bool canRedefine)
    : fName(memory->SaveStringPerm(name)), fMacroType(type), fCanRedefine(canRedefine) {}

void PP_MacroBody::Undefine(PP_CMemoryManager* memory) {
    switch (fMacroType) {
    case kPP_MacroObject:
    case kPP_MacroFunction:
        memory->FreePerm(fFormals);
        memory->FreePerm(fMacroText);
        break;
    case kPP_MacroSpecial: break;
    default: VELOR_ASSERT(false);
    }
    fFormals = nullptr;
    fMacroText = nullptr;
    fParamCount = -1;
    fSelfExpansion = SelfExpansion::kUnknown;
}

void PP_MacroBody::Destroy(PP_CMemoryManager* memory) {
    Undefine(memory);
    memory->FreePerm(fName);
    memory->FreePerm(this);
}

PP_MacroLink* PP_MacroLink::Alloc(PP_CMemoryManager* memory, void* body, PP_MacroLink* next) {
    return new (memory, PP_AllocTemp()) PP_MacroLink{body, next};
}

bool PP_CMacroTable::IsMacroDefined(char const* name, unsigned long length) {
    PP_MacroBody* body = LookupMacro(name, length);
    return body != nullptr && body->fMacroText != nullptr;
}

namespace {

// The two keys of a name: the chain's hash, FNV-1a over its bytes, and the additive signature.
// Every identifier of the input is looked up, so both are taken in one pass.
struct NameKeys {
    std::uint32_t fHash;
    std::uint32_t fSignature;
};

NameKeys KeysOf(char const* name, unsigned long length) {
    NameKeys keys{2166136261u, static_cast<std::uint32_t>(length << 8)};
    for (unsigned long i = 0; i < length; ++i) {
        keys.fHash = (keys.fHash ^ static_cast<unsigned char>(name[i])) * 16777619u;
        keys.fSignature += static_cast<std::uint32_t>(static_cast<signed char>(name[i]));
    }
    return keys;
}

}  // namespace

std::uint32_t PP_CMacroTable_Basic::Signature(char const* name, unsigned long length) {
    return KeysOf(name, length).fSignature;
}

PP_MacroBody* PP_CMacroTable_Basic::LookupMacro(char const* name, unsigned long length) {
    NameKeys const keys = KeysOf(name, length);
    for (PP_MacroEntry* entry = BucketOf(keys.fHash); entry != nullptr; entry = entry->fNext) {
        char const* candidate = entry->fBody->fName;
        if (entry->fSignature == keys.fSignature && std::strncmp(name, candidate, length) == 0 && candidate[length] == 0)
            return entry->fBody;
    }
    return nullptr;
}

PP_MacroBody* PP_CMacroTable_Basic::EnterMacro(char const* name, PP_MacroType type, bool canRedefine) {
    if (fEntryCount >= fBuckets.size())
        GrowBuckets();
    unsigned long const length = std::strlen(name);
    NoteName(name, length);
    NameKeys const keys = KeysOf(name, length);
    PP_MacroBody* body = new (fMemory, PP_AllocPerm()) PP_MacroBody(fMemory, name, type, canRedefine);
    PP_MacroEntry*& head = BucketOf(keys.fHash);
    head = new (fMemory, PP_AllocPerm()) PP_MacroEntry{head, body, keys.fSignature, keys.fHash};
    ++fEntryCount;
    return body;
}

// Relinks every entry into twice as many chains. A name has one entry, so the order within a
// chain decides nothing.
void PP_CMacroTable_Basic::GrowBuckets() {
    std::vector<PP_MacroEntry*> old(fBuckets.size() * 2);
    old.swap(fBuckets);
    for (PP_MacroEntry* entry : old) {
        while (entry != nullptr) {
            PP_MacroEntry* next = entry->fNext;
            PP_MacroEntry*& head = BucketOf(entry->fHash);
            entry->fNext = head;
            head = entry;
            entry = next;
        }
    }
}

// The record that a definition of `name` fills in, or null when the name must not be touched.
PP_MacroBody* PP_CMacroTable_Basic::PrepareDefinition(char const* name, PP_MacroType type, bool canRedefine) {
    if (!UndefineMacro(name))
        return nullptr;
    PP_MacroBody* body = LookupMacro(name, std::strlen(name));
    if (body == nullptr)
        body = EnterMacro(name, type, canRedefine);
    body->fMacroType = type;
    body->fCanRedefine = canRedefine;
    return body;
}

// Stores the text as given; a second definition replaces the first without a word.
bool PP_CMacroTable_Basic::DefineMacro(char const* name, char const* text, bool canRedefine) {
    PP_MacroBody* body = PrepareDefinition(name, kPP_MacroObject, canRedefine);
    if (body == nullptr)
        return false;
    body->fMacroText = fMemory->SaveStringPerm(text);
    return true;
}

bool PP_CMacroTable_Basic::DefineSpecialMacro(char const* name, void* function, bool canRedefine) {
    PP_MacroBody* body = PrepareDefinition(name, kPP_MacroSpecial, canRedefine);
    if (body == nullptr)
        return false;
    body->fMacroText = static_cast<char*>(function);
    return true;
}

bool PP_CMacroTable_Basic::UndefineMacro(char const* name) {
    PP_MacroBody* body = LookupMacro(name, std::strlen(name));
    if (body == nullptr || body->fMacroText == nullptr)
        return true;
    if (!body->fCanRedefine)
        return false;
    UndefineMacro(body);
    return true;
}

void PP_CMacroTable_Basic::UndefineMacro(PP_MacroBody* body) { body->Undefine(fMemory); }

// Leaves the chain heads dangling: the table is not used after this.
void PP_CMacroTable_Basic::ReleaseMacros() {
    for (PP_MacroEntry* head : fBuckets) {
        while (head != nullptr) {
            PP_MacroEntry* next = head->fNext;
            head->fBody->Destroy(fMemory);
            fMemory->FreePerm(head);
            head = next;
        }
    }
}
