// The per-resource files: names derived from the -o path, one file per resource, the removal of
// the files of earlier runs, and the record of the source file.

#include "PerResourceFiles.h"

#include <cstdint>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "Msgs.h"
#include "Options.h"
#include "OutputFiles.h"
#include "RCResource.h"
#include "velor/ResourceTree.h"

namespace fs = std::filesystem;

namespace {

constexpr char kSourceRecordName[] = "vdFilePath";
// The record's replacement while it is written. Its suffix makes the clean-up take it away, should
// a killed run leave it behind, and it is never read as the record.
constexpr char kSourceRecordTemporaryName[] = "vdFilePath.new.vlbk";
constexpr char kTimestampName[] = "timestamp.vlbk";
constexpr char kResourceSuffix[] = ".vlbk";
// Far below the usual limit of 1024 descriptors, and above the types of most descriptions.
constexpr size_t kMaxOpenTypeFolders = 64;
// Characters that split or quote a word in an unquoted list of file names.
constexpr char kListBreakers[] = " \t\n\v\f\r'\"\\";

bool EndsWith(std::string const& text, std::string const& suffix) {
    return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// Links count as the entries they are, never as what they point at.
bool IsDirectory(fs::directory_entry const& entry) {
    std::error_code error;
    return entry.symlink_status(error).type() == fs::file_type::directory;
}

bool IsRemovableResourceFile(fs::directory_entry const& entry) {
    return EndsWith(entry.path().filename().string(), kResourceSuffix) && !IsDirectory(entry) &&
           entry.path().string().find_first_of(kListBreakers) == std::string::npos;
}

// The messages below are built from file names and then shown as a format, so that "%%" in a
// name shows as "%". Every other "%" is shown as it stands: the format has no arguments for a
// conversion to take.
std::string AsFormat(std::string const& text) {
    std::string format;
    for (size_t at = 0; at < text.size(); ++at) {
        format += text[at];
        if (text[at] != '%') continue;
        if (at + 1 < text.size() && text[at + 1] == '%')
            format += text[++at];
        else
            format += '%';
    }
    return format;
}

void ShowError(std::string const& text) { Msgs::Display(Msgs::kError, AsFormat(text).c_str()); }

void StopOnSeveralInputFiles() {
    if (gOptions->FileCount() <= 1) return;
    std::string text = "Trying to handle more than one .vd file:\n";
    for (long i = 0; i < gOptions->FileCount(); ++i) text += std::string("File: ") + gOptions->GetFile(i) + "\n";
    ShowError(text);
    Msgs::Exit(1);
}

// The record read back as its words joined by single blanks. A record that ends in white space
// gains a trailing blank from the last, failing, extraction, and so never matches.
std::string ReadRecordedSource(std::istream& record) {
    std::string recorded;
    record >> recorded;
    while (record.good()) {
        std::string word;
        record >> word;
        recorded += ' ';
        recorded += word;
    }
    return recorded;
}

// The record on disk as a read gives it, or nothing when there is none to read.
std::optional<std::string> ReadRecordFile(std::string const& folder) {
    std::ifstream record(folder + kSourceRecordName);
    if (!record.is_open()) return std::nullopt;
    return ReadRecordedSource(record);
}

// What a read of a record holding exactly text gives.
std::string RecordReadBack(std::string const& text) {
    std::istringstream record(text);
    return ReadRecordedSource(record);
}

[[noreturn]] void StopOnSourceConflict(std::string const& folder, std::string const& previous,
                                       std::string const& current) {
    ShowError("Previous .vd file " + previous + " and current .vd file " + current +
              " do not match. This is likely due to VELOR being called twice for different .vd files in "
              "the same project. Use one .vd file and #include these instead.\n");
    // The record now names the current file, so that the same command succeeds when run again.
    CreateVdFilePathFile(folder);
    Msgs::Exit(1);
}

bool DebugMacroGiven() {
    for (long i = 0; i < gOptions->MacroCount(); ++i)
        if (std::strcmp(gOptions->GetMacroName(i), "DEBUG") == 0) return true;
    return false;
}

}  // namespace

std::optional<std::string> OutputFolder() {
    std::string output = gOptions->GetOutput();
    size_t slash = output.rfind('/');
    if (slash == std::string::npos) return std::nullopt;
    return output.substr(0, slash + 1);
}

void RemoveOldResourceFiles(std::string const& folder) {
    // Collected first, so that the walk never runs over a folder it is changing.
    std::vector<fs::path> doomed;
    std::error_code error;
    fs::recursive_directory_iterator entries(folder, fs::directory_options::skip_permission_denied, error);
    for (; !error && entries != fs::recursive_directory_iterator(); entries.increment(error))
        if (IsRemovableResourceFile(*entries)) doomed.push_back(entries->path());
    for (auto const& path : doomed) fs::remove(path, error);
}

PerResourceFiles::PerResourceFiles() : fFolder(OutputFolder()), fDebug(DebugMacroGiven()) {}

PerResourceFiles::~PerResourceFiles() = default;

// Every resource checks the record as it would read back from the disk. The disk is asked once;
// after that the run knows what stands there: what it read, or what it wrote itself. The record
// is written at the first resource and again only while that write fails.
void PerResourceFiles::CheckAndRecordSource() {
    if (!fRecordKnown) {
        fRecord = ReadRecordFile(*fFolder);
        fRecordKnown = true;
    }
    std::string const current = gOptions->GetFile(0);
    if (fRecord && *fRecord != current) StopOnSourceConflict(*fFolder, *fRecord, current);
    if (fRecordWritten) return;
    fRecordWritten = CreateVdFilePathFile(*fFolder);
    // A name that does not survive the reading as blank-separated words stops the run at the
    // second resource.
    if (fRecordWritten) fRecord = RecordReadBack(current);
}

// Each type folder is made once per run and opened once while it stays among the open ones:
// resources of a few types interleave, and reopening a folder for every file would double the
// calls a file costs. The descriptors are bounded, so that a run over thousands of types stays
// within the process's limit; past the bound all are closed and the set starts again.
OpenFolder const& PerResourceFiles::TypeFolder(std::string const& name) {
    auto open = fOpenTypeFolders.find(name);
    if (open != fOpenTypeFolders.end()) return *open->second;
    std::string path = *fFolder + "/" + name;
    if (fMadeTypeFolders.insert(name).second) {
        std::error_code ignored;
        fs::create_directory(path, ignored);
    }
    if (fOpenTypeFolders.size() == kMaxOpenTypeFolders) fOpenTypeFolders.clear();
    return *fOpenTypeFolders.emplace(name, std::make_unique<OpenFolder>(path)).first->second;
}

int PerResourceFiles::CreateResourceFile(RCResource const* resource) {
    if (!fFolder) return 1;
    StopOnSeveralInputFiles();
    CheckAndRecordSource();
    // Named as the run-time reader looks them up.
    velor::ResourceType const type(static_cast<uint32_t>(resource->GetType()));
    OpenFolder const& typeFolder = TypeFolder(type.FolderName());
    std::string const name = velor::ResourceTree::FileNameOf(resource->GetId());
    if (!typeFolder.WriteFile(name, resource->GetContents(), resource->GetContentsLength())) return 1;
    if (!fDebug) return 0;
    std::string const stamp = std::to_string(std::time(nullptr));
    return WriteFileNoFollow(*fFolder + kTimestampName, stamp.data(), stamp.size()) ? 0 : 1;
}

bool CreateVdFilePathFile(std::string const& folder) {
    std::string const source = gOptions->GetFile(0);
    return ReplaceFile(folder + kSourceRecordName, folder + kSourceRecordTemporaryName, source.data(), source.size());
}
