// The dependency rule of a run, and its writing: every path escaped for Make, the file replaced
// whole through a temporary so that a reader never sees half of it.

#include "DependencyRecord.h"

#include "Msgs.h"
#include "OutputFiles.h"

DependencyRecord* gDependencies = nullptr;

namespace {

// Make takes the rest of a line after a colon as a list of words, so each path goes on a line of
// its own behind a continuation.
void AppendList(std::string& text, std::vector<std::string> const& paths) {
    for (auto const& path : paths) text += " \\\n  " + DependencyRecord::Escaped(path);
}

}  // namespace

std::unique_ptr<DependencyRecord> DependencyRecord::FromSetting(char const* setting, char const* defaultTarget) {
    if (setting == nullptr || setting[0] == '\0') return nullptr;
    std::string_view const value(setting);
    size_t const blank = value.find(' ');
    if (blank == 0) {
        Msgs::Display(Msgs::kError, "VELOR_DEPENDENCIES_OUTPUT names no file: \"%s\"\n", setting);
        return nullptr;
    }
    std::string_view const target = blank == std::string_view::npos ? "" : value.substr(blank + 1);
    return std::make_unique<DependencyRecord>(std::string(value.substr(0, blank)),
                                              std::string(target.empty() ? defaultTarget : target));
}

DependencyRecord::DependencyRecord(std::string fileName, std::string target)
    : fFileName(std::move(fileName)), fTarget(std::move(target)) {}

void DependencyRecord::Note(char const* path) {
    if (fSeen.insert(path).second) fPrerequisites.emplace_back(path);
}

std::string DependencyRecord::Text() const {
    std::string text = Escaped(fTarget) + ":";
    AppendList(text, fPrerequisites);
    text += "\n";
    for (auto const& path : fPrerequisites)
        if (fInputs.count(path) == 0) text += "\n" + Escaped(path) + ":\n";
    return text;
}

bool DependencyRecord::Write() const {
    std::string const text = Text();
    return ReplaceFile(fFileName, fFileName + ".new", text.data(), text.size());
}

std::string DependencyRecord::Escaped(std::string_view path) {
    std::string escaped;
    size_t backslashes = 0;
    for (char const c : path) {
        if (c == ' ' || c == '\t') escaped.append(backslashes + 1, '\\');
        if (c == '#') escaped += '\\';
        if (c == '$') escaped += '$';
        escaped += c;
        backslashes = c == '\\' ? backslashes + 1 : 0;
    }
    return escaped;
}
