// Messages and exit: every message the compiler shows, and every way out of the process.
#pragma once

#include <csignal>
#include <cstdarg>
#include <cstdint>

// The one channel for everything the compiler tells the user, and the one way out of the process.
// Every member is static so that messages work before any other object exists.
//
// A message carries a mask of kinds; it shows when the mask shares a bit with the current
// diagnostic mask. Errors are counted and acted on at explicit check points (ErrorCheck);
// a fatal message ends the run at once.
class Msgs {
public:
    // Message kinds, also the bits of the diagnostic mask.
    enum : unsigned char {
        kDebug = 1,
        kProgress = 2,
        kWarning = 4,
        kError = 8,
        kFatal = 16,
        kNote = 32,
        kSilent = 128,
    };

    // Carries the exit code from Exit to main, so that stack objects unwind on the way out.
    class Exception {
    public:
        explicit Exception(int32_t exitCode) : fExitCode(exitCode) {}
        int32_t GetExitCode() const { return fExitCode; }

    private:
        int32_t fExitCode;
    };

    // Free-form message: the format carries its own line end.
    static void Display(unsigned char mask, char const* format, ...);
    // Numbered message from the error string table; the line end is added here.
    static void Display(unsigned char mask, int id, ...);
    static void VDisplay(unsigned char mask, va_list args, char const* format);
    static void VDisplay(unsigned char mask, va_list args, int id);

    static char* GetErrorFileText(long id, char* buffer, int size);
    static void SysErr(unsigned char mask, long code);
    static void IncrementErrorCount(unsigned char mask);

    // Ends the run with exit code 1 when an error was counted or an interrupt arrived.
    static void ErrorCheck();
    static void ErrorCheck(char const* format, ...);
    static void CheckInterrupted();
    static void CheckInterrupted(char const* format, ...);

    [[noreturn]] static void Exit(int code);
    // Returns the previous setting.
    static bool ThrowOnExit(bool throwOnExit);

    static void SetMask(unsigned char mask) { fgDiagMask = mask; }
    static unsigned char GetMask() { return fgDiagMask; }
    static void SetProgName(char const* progName) { fgProgname = progName; }
    // Safe to call from a signal handler.
    static void SetInterrupted(bool interrupted) { fgInterrupted = interrupted; }
    static void Spin();
    static void InnerSpin();

    static uint32_t GetErrorCount() { return fgErrorCount; }
    static uint32_t GetWarningCount() { return fgWarningCount; }
    // For a process that runs more than one compilation: the next starts with nothing counted.
    static void ResetCounts() { fgErrorCount = fgWarningCount = 0; }

private:
    static unsigned char fgDiagMask;
    static char const* fgProgname;
    static bool fgTickTock;
    static uint32_t fgErrorCount;
    static uint32_t fgWarningCount;
    static bool fgThrowOnExit;
    static volatile std::sig_atomic_t fgInterrupted;
};
