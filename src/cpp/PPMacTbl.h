// The macro table: names to prepared bodies, plus the special macros answered by a function.

#ifndef PPMACTBL_H
#define PPMACTBL_H

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "PPMemMgr.h"

enum PP_MacroType {
    kPP_MacroSpecial = 0,  // fMacroText holds a function, not text
    kPP_MacroObject = 1,
    kPP_MacroFunction = 2
};

// Control bytes of prepared replacement text. Nothing in a body is escaped, so such a byte in
// the source of a macro body is taken for a control code when the macro is expanded.
enum : char {
    kPP_MacroParam = 1,      // followed by the parameter's index + 5
    kPP_MacroStringize = 2,  // followed by kPP_MacroParam and its index byte
    kPP_MacroPaste = 3,      // joins what stands left and right of it
    kPP_MacroNoExpand = 4,   // behind an identifier of expanded text: never expand it again
    kPP_MacroEscape = 5      // followed by a byte value + 5, which stands for itself
};

// Keeps parameter index bytes clear of the control codes and of NUL.
constexpr int kPP_MacroIndexBias = 5;

// A macro's name and prepared replacement text. The record outlives #undef: only its text and
// formals go, so that a later #define finds and reuses it.
struct PP_MacroBody {
    PP_MacroBody(PP_CMemoryManager* memory, char const* name, PP_MacroType type, bool canRedefine);

    void Undefine(PP_CMemoryManager* memory);
    void Destroy(PP_CMemoryManager* memory);

    char* fName;
    char* fMacroText = nullptr;  // null: not defined at present
    char* fFormals = nullptr;    // parameter names joined by commas
    short fParamCount = -1;      // -1: no parameter list
    PP_MacroType fMacroType;
    bool fCanRedefine;
    // Whether object-like text expands to itself, so that expansion need not scan it: found out
    // at the first expansion of each definition.
    enum class SelfExpansion : unsigned char { kUnknown, kYes, kNo };
    SelfExpansion fSelfExpansion = SelfExpansion::kUnknown;
};

struct PP_MacroEntry {
    PP_MacroEntry* fNext;
    PP_MacroBody* fBody;
    std::uint32_t fSignature;
    std::uint32_t fHash;
};

// The chain of macros whose replacement text is being scanned; lives in temp memory.
struct PP_MacroLink {
    static PP_MacroLink* Alloc(PP_CMemoryManager* memory, void* body, PP_MacroLink* next);

    void* fBody;
    PP_MacroLink* fNext;
};

class PP_CMacroTable {
public:
    PP_CMacroTable() = default;
    PP_CMacroTable(PP_CMacroTable const&) = delete;
    PP_CMacroTable& operator=(PP_CMacroTable const&) = delete;
    virtual ~PP_CMacroTable() = default;

    virtual void ReleaseMacros() = 0;
    virtual bool DefineMacro(char const* name, char const* text, bool canRedefine) = 0;
    virtual bool DefineSpecialMacro(char const* name, void* function, bool canRedefine) = 0;
    virtual bool UndefineMacro(char const* name) = 0;
    // Makes a new record without looking for an existing one; callers have looked first.
    virtual PP_MacroBody* EnterMacro(char const* name, PP_MacroType type, bool canRedefine) = 0;
    // Also finds undefined records; `name` need not end in a NUL.
    virtual PP_MacroBody* LookupMacro(char const* name, unsigned long length) = 0;
    virtual void UndefineMacro(PP_MacroBody* body) = 0;
    virtual bool IsMacroDefined(char const* name, unsigned long length);

    // False when no record of `name` exists: every identifier of the input is asked about, and
    // most are told from all macros this way, by their first byte and length, without a lookup.
    bool MayHold(char const* name, unsigned long length) const {
        return length == 0 || fNamesEntered.test(NameKey(name, length));
    }

protected:
    // Every implementation notes here each name it makes a record for.
    void NoteName(char const* name, unsigned long length) {
        if (length != 0)
            fNamesEntered.set(NameKey(name, length));
    }

private:
    static constexpr std::size_t kLengthKeys = 16;
    static std::size_t NameKey(char const* name, unsigned long length) {
        return static_cast<unsigned char>(name[0]) * kLengthKeys + std::min<std::size_t>(length, kLengthKeys - 1);
    }

    std::bitset<256 * kLengthKeys> fNamesEntered;
};

// The one implementation: 101 hash chains that never rehash.
class PP_CMacroTable_Basic : public PP_CMacroTable {
public:
    explicit PP_CMacroTable_Basic(PP_CMemoryManager* memory) : fMemory(memory) {}

    void ReleaseMacros() override;
    bool DefineMacro(char const* name, char const* text, bool canRedefine) override;
    bool DefineSpecialMacro(char const* name, void* function, bool canRedefine) override;
    bool UndefineMacro(char const* name) override;
    PP_MacroBody* EnterMacro(char const* name, PP_MacroType type, bool canRedefine) override;
    PP_MacroBody* LookupMacro(char const* name, unsigned long length) override;
    void UndefineMacro(PP_MacroBody* body) override;

    static std::uint32_t Signature(char const* name, unsigned long length);

private:
    static constexpr std::size_t kInitialBucketCount = 128;

    PP_MacroBody* PrepareDefinition(char const* name, PP_MacroType type, bool canRedefine);
    PP_MacroEntry*& BucketOf(std::uint32_t hash) { return fBuckets[hash & (fBuckets.size() - 1)]; }
    void GrowBuckets();

    PP_CMemoryManager* fMemory;
    // A power of two of chain heads, doubled whenever the entries outnumber them.
    std::vector<PP_MacroEntry*> fBuckets = std::vector<PP_MacroEntry*>(kInitialBucketCount);
    std::size_t fEntryCount = 0;
};

#endif
