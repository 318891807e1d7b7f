// Memory of the preprocessor, in three classes by lifetime, so that the text of a macro
// expansion costs nothing to free.

#ifndef PPMEMMGR_H
#define PPMEMMGR_H

#include <cstddef>
#include <utility>

class PP_CInput;

// The preprocessor's per-file arena. Every allocation belongs to one of three classes:
// permanent blocks (freed singly and counted), input records (recycled through a free list)
// and temp memory (bump allocation, dropped in bulk when the input stack is back on a file).
class PP_CMemoryManager {
public:
    PP_CMemoryManager() = default;
    PP_CMemoryManager(PP_CMemoryManager const&) = delete;
    PP_CMemoryManager& operator=(PP_CMemoryManager const&) = delete;
    virtual ~PP_CMemoryManager() = default;

    virtual PP_CInput* AllocInput(char const* text, unsigned long length);
    virtual void FreeInput(PP_CInput* input);
    virtual void ReleaseInput();
    virtual void* AllocPerm(unsigned long size) = 0;
    virtual void FreePerm(void* block) = 0;
    virtual void* AllocTemp(unsigned long size) = 0;
    virtual void FreeTemp() = 0;
    virtual void ReleaseTemp() = 0;

    char* SaveStringPerm(char const* text);
    char* SaveStringTemp(char const* text);
    void FreeStringPerm(char* text) { FreePerm(text); }

    bool IsTempMemInUse() const { return fTempMemUsageCount != 0; }
    void IncrTempMemUsage() { ++fTempMemUsageCount; }
    void DecrTempMemUsage() { --fTempMemUsageCount; }

    unsigned long GetTempMemUsageCount() const { return fTempMemUsageCount; }
    unsigned long GetAllocPermCount() const { return fAllocPermCount; }
    unsigned long GetAllocInputCount() const { return fAllocInputCount; }

protected:
    unsigned long fTempMemUsageCount = 0;
    unsigned long fAllocPermCount = 0;
    unsigned long fAllocInputCount = 0;
    PP_CInput* fFreeInputList = nullptr;
};

// Header of one temp block. The usable storage follows the header directly, so the first byte
// after it is the block's rewind position.
struct PP_TempMem {
    PP_TempMem* fNext;
    char* fFree;
    char* fLast;

    char* First() { return reinterpret_cast<char*>(this + 1); }
    unsigned long Available() const { return static_cast<unsigned long>(fLast - fFree); }
    void* Alloc(unsigned long size);
    void Release(char* position);
};

class PP_CMemoryManager_Basic : public PP_CMemoryManager {
public:
    PP_CMemoryManager_Basic() = default;
    ~PP_CMemoryManager_Basic() override;

    void* AllocPerm(unsigned long size) override;
    void FreePerm(void* block) override;
    void* AllocTemp(unsigned long size) override;
    void FreeTemp() override;
    void ReleaseTemp() override;

private:
    void OpenTempBlock(unsigned long size);

    PP_TempMem* fTempList = nullptr;
    unsigned long fPermBytes = 0;  // the sizes of the blocks now given out
};

// Declares temp memory to be in use for the guard's lifetime, which keeps FreeTemp away.
class PP_CUseTempMem {
public:
    explicit PP_CUseTempMem(PP_CMemoryManager* memory) : fMemory(memory) { fMemory->IncrTempMemUsage(); }
    PP_CUseTempMem(PP_CUseTempMem const&) = delete;
    PP_CUseTempMem& operator=(PP_CUseTempMem const&) = delete;
    ~PP_CUseTempMem() { fMemory->DecrTempMemUsage(); }

private:
    PP_CMemoryManager* fMemory;
};

// Owns one permanent block until it is handed on. A run that unwinds past the owner (a fatal
// message, a failed allocation) still gives the block back, so the manager's counts stay whole.
class PP_CPermText {
public:
    explicit PP_CPermText(PP_CMemoryManager* memory) : fMemory(memory) {}
    PP_CPermText(PP_CPermText const&) = delete;
    PP_CPermText& operator=(PP_CPermText const&) = delete;
    ~PP_CPermText() { fMemory->FreePerm(fText); }

    // Where a reader stores the block it has made.
    char** Receive() { return &fText; }
    char const* Get() const { return fText; }
    char* Release() { return std::exchange(fText, nullptr); }

private:
    PP_CMemoryManager* fMemory;
    char* fText = nullptr;
};

struct PP_AllocPerm {};
struct PP_AllocTemp {};

void* operator new(std::size_t size, PP_CMemoryManager* memory, PP_AllocPerm);
void* operator new(std::size_t size, PP_CMemoryManager* memory, PP_AllocTemp);

#endif
