// The per-resource files beside the -o output, and the record of the source file they came from.
#pragma once

#include <optional>
#include <string>

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

// Writes one resource file, after ending the run with exit code 1 when more than one input file
// was named or when the folder's record names another input file, and recording the current one.
// Answers 0, or 1 when nothing could be written.
int CreateResourceFile(RCResource const* resource);

// Records the first input file as the source of folder; a failure passes in silence.
void CreateVdFilePathFile(std::string const& folder);
