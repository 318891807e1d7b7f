// The options of one run, in gOptions, owned by the tool for the whole process.
#pragma once

#include <cstdint>

#include "Vector.h"

// What the command line asked for: macros, include directories in search order, input files,
// the output path and the creator and type of the output file. Texts are kept by pointer and
// must live as long as the record; the ones made here come from the permanent arena.
class Options {
public:
    Options();

    long MacroCount() const { return static_cast<long>(fMacroNames.Count()); }
    char const* GetMacroName(long i) const { return static_cast<char const*>(fMacroNames.At(i)); }
    char const* GetMacroBody(long i) const { return static_cast<char const*>(fMacroBodies.At(i)); }
    void AddMacro(char const* name, char const* body);

    long DirectoryCount() const { return static_cast<long>(fDirectories.Count()); }
    char const* GetDirectory(long i) const { return static_cast<char const*>(fDirectories.At(i)); }
    // Adds a directory with a "/" at its end. A path ending in "*" adds the subdirectories of the
    // path first, in pre-order, and then the path itself as written without the stars.
    void AddDirectory(char const* path);
    // Adds each piece of a ";"-separated list.
    void AddDirectories(char const* list);
    void AddSubDirectories(char const* path);

    long FileCount() const { return static_cast<long>(fFiles.Count()); }
    char const* GetFile(long i) const { return static_cast<char const*>(fFiles.At(i)); }
    void AddFile(char const* path) { AddText(fFiles, path); }

    char const* GetOutput() const { return fOutput; }
    void AddOutput(char const* path) { fOutput = path; }

    uint64_t GetCreator() const { return fCreator; }
    void SetCreator(uint64_t creator) { fCreator = creator; }
    uint64_t GetType() const { return fType; }
    void SetType(uint64_t type) { fType = type; }

    bool GetWriteDescriptions() const { return fWriteDescriptions; }
    void SetWriteDescriptions(bool write) { fWriteDescriptions = write; }
    // Accepted for compatibility; output is the same either way.
    void SetSingleFileOutput(bool single) { fSingleFileOutput = single; }

private:
    static void AddText(Vector& texts, char const* text) { texts.AddItem(const_cast<char*>(text)); }

    Vector fMacroNames;
    Vector fMacroBodies;
    Vector fDirectories;
    Vector fFiles;
    char const* fOutput = "VELOR.rsrc";
    uint64_t fCreator = 0x42524320;  // 'BRC '
    uint64_t fType = 0x52535243;     // 'RSRC'
    bool fWriteDescriptions = false;
    bool fSingleFileOutput = false;
};

// The options of the run; owned by the tool object, null outside its lifetime.
extern Options* gOptions;
