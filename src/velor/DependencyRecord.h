// The files a run reads, kept for build systems that must know when to compile again.
//
// A run that is asked for it writes a Make-style rule: the target depends on every file the
// compiler read, in the order it first read them. The record exists only when asked for, so a
// run without it pays one null test per file read and nothing else.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

class DependencyRecord {
public:
    // The value of VELOR_DEPENDENCIES_OUTPUT: a file name, optionally a blank and a target name.
    // An empty value asks for nothing; one that names no file is refused with a message.
    static std::unique_ptr<DependencyRecord> FromSetting(char const* setting, char const* defaultTarget);

    DependencyRecord(std::string fileName, std::string target);

    // A file named on the command line: it depends on nothing and gets no empty rule of its own,
    // so that a missing input is still a missing input to Make.
    void MarkInput(char const* path) { fInputs.insert(path); }
    // A file the compiler has read; the first reading counts.
    void Note(char const* path);

    // The rule, then an empty rule for every file read that was not an input, so that Make does
    // not stop when a file that was included once has gone.
    std::string Text() const;
    // Replaces the file whole through the temporary "<file>.new" beside it; false if that failed.
    bool Write() const;
    std::string const& FileName() const { return fFileName; }

    // A path as Make reads it: blanks and tabs behind a backslash (the backslashes in front of
    // them doubled), "$" as "$$" and "#" behind a backslash.
    static std::string Escaped(std::string_view path);

private:
    std::string fFileName;
    std::string fTarget;
    std::vector<std::string> fPrerequisites;
    std::set<std::string> fSeen;
    std::set<std::string> fInputs;
};

// The record of the run, or null when none was asked for.
extern DependencyRecord* gDependencies;
