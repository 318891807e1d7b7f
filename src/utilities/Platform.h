// The platform layer, the only place that knows what the original platform calls become here.
#pragma once

// The platform calls the compiler was written against, provided over the standard library.
//
// A handle is a pointer to a master pointer that points at a heap block. The master pointer never
// moves, so a handle stays valid while its block is resized and moved. Each call records its
// result for MemError: 0, or kMemFullErr when memory ran out.

using Handle = void**;

constexpr long kMemFullErr = -108;

Handle NewHandleClear(unsigned long size);
void SetHandleSize(Handle handle, unsigned long size);
long GetHandleSize(Handle handle);
void DisposeHandle(Handle handle);
// Replaces *handle by a new handle that holds a copy of its block; returns the result code.
long HandToHand(Handle* handle);
void HLock(Handle handle);
void HUnlock(Handle handle);
signed char HGetState(Handle handle);
void HSetState(Handle handle, signed char state);
long MemError();

// Debugger trace with a length-prefixed text. There is no debugger to drop into here; the text
// is only a trace and nothing depends on it.
void DebugStr(unsigned char const* pascalText);
// DebugStr for a NUL-terminated text; a text beyond 255 bytes is cut.
void DebugTrace(char const* text);
