// The dependency rule of a run, and its writing: every path escaped for Make, the file replaced
// whole through a temporary so that a reader never sees half of it.

#include "DependencyRecord.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "Msgs.h"

DependencyRecord* gDependencies = nullptr;

namespace {

// Make takes the rest of a line after a colon as a list of words, so each path goes on a line of
// its own behind a continuation.
void AppendList(std::string& text, std::vector<std::string> const& paths) {
    for (auto const& path : paths) text += " \\\n  " + DependencyRecord::Escaped(path);
}

bool WriteAll(int descriptor, std::string const& text) {
    for (size_t done = 0; done < text.size();) {
        ssize_t const written = ::write(descriptor, text.data() + done, text.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        done += static_cast<size_t>(written);
    }
    return true;
}

// The temporary is made new (never opened through a link) and then renamed over the target, which
// replaces a link there instead of writing through it; a failed run leaves the old file whole.
bool ReplaceFile(std::string const& path, std::string const& text) {
    std::string temporary = path + ".XXXXXX";
    int const descriptor = ::mkstemp(temporary.data());
    if (descriptor < 0) return false;
    mode_t const mask = ::umask(0);
    ::umask(mask);
    bool const written = ::fchmod(descriptor, 0666 & ~mask) == 0 && WriteAll(descriptor, text);
    bool const closed = ::close(descriptor) == 0;
    if (written && closed && std::rename(temporary.c_str(), path.c_str()) == 0) return true;
    ::unlink(temporary.c_str());
    return false;
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

bool DependencyRecord::Write() const { return ReplaceFile(fFileName, Text()); }

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
