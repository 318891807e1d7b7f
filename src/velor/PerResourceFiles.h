// The per-resource files beside the -o output, and the record of the source file they came from.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "OutputFiles.h"

class RCResource;

// The per-resource output beside the -o file. All names follow from the folder of the -o path:
//   folder + "/vlbk_" + TYPE + "/" + ID + ".vlbk"   one resource, its bytes and nothing else
//   folder + "vdFilePath"                           the input file the folder belongs to
//   folder + "timestamp.vlbk"                       the time of the last write, under -d DEBUG
// The folder keeps its trailing "/", so the resource paths hold a doubled one.

// The -o path up to and including its last "/"; nothing for a path without one.
std::optional<std::string> OutputFolder();

// Deletes every entry named "*.vlbk" anywhere below folder that is not a directory, links
// included; the walk never follows a link into a directory. Files whose path, spelled from
// folder on, holds white space, a quote or a backslash stay, as they always have: builds rely on
// files of types such as 'STR ' surviving. Nothing else is touched and no shell is involved.
void RemoveOldResourceFiles(std::string const& folder);

// The writer of one run's resources. It keeps what the run has learnt of the folder: the record's
// contents and the type folders already made.
class PerResourceFiles {
public:
    PerResourceFiles();
    ~PerResourceFiles();
    PerResourceFiles(PerResourceFiles const&) = delete;
    PerResourceFiles& operator=(PerResourceFiles const&) = delete;

    // Writes one resource file, after ending the run with exit code 1 when more than one input
    // file was named or when the folder's record names another input file, and recording the
    // current one. Answers 0, or 1 when nothing could be written.
    int CreateResourceFile(RCResource const* resource);

private:
    void CheckAndRecordSource();
    // The open folder of one type, by its name ("vlbk_" and the type).
    OpenFolder const& TypeFolder(std::string const& name);

    std::optional<std::string> fFolder;
    bool fDebug;
    // The record as a read of it gives, or nothing when there is none; valid once known.
    std::optional<std::string> fRecord;
    bool fRecordKnown = false;
    bool fRecordWritten = false;
    std::unordered_set<std::string> fMadeTypeFolders;
    // The type folders held open, by type; at most kMaxOpenTypeFolders at a time.
    std::unordered_map<std::string, std::unique_ptr<OpenFolder>> fOpenTypeFolders;
};

// Records the first input file as the source of folder; false when that failed, which passes in
// silence.
bool CreateVdFilePathFile(std::string const& folder);
