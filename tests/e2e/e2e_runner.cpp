// Runs the compiler end to end over the cases kept as data below tests/e2e/cases.
//
// A case is any folder holding a file named "args". In a fresh temporary folder the runner copies
// the case's "in/" tree, runs the compiler there with argv[0] set to "velor" and compares:
//   command   optional: the program to run instead, "velor-walk"; argv[0] is then its name
//   args      one argument per line
//   env       optional KEY=VALUE lines: the whole environment of the run
//   stderr    the exact standard error (absent: empty)
//   stdout    the exact standard output (absent: empty)
//   exit      the exit code (absent: 0)
//   out/      files the run must leave; afterwards the folder holds exactly in/ and out/ together,
//             byte for byte, with a file of out/ replacing the one of the same name in in/
// A case may run more than once: "command2", "args2", "env2", "stderr2", "stdout2" and "exit2"
// describe the second run in the same folder, and so on. In every text "$TMP" stands for the
// temporary folder's path.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr unsigned kRunTimeLimitSeconds = 30;

std::string ReadWhole(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string ReadOptional(const fs::path& path, const std::string& fallback = "") {
    return fs::exists(path) ? ReadWhole(path) : fallback;
}

std::string ReplaceAll(std::string text, const std::string& from, const std::string& to) {
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// Regular files below root, by path relative to it, with their contents.
std::map<std::string, std::string> FileTree(const fs::path& root) {
    std::map<std::string, std::string> files;
    if (!fs::exists(root)) return files;
    for (const auto& entry : fs::recursive_directory_iterator(root))
        if (entry.is_regular_file())
            files[fs::relative(entry.path(), root).generic_string()] = ReadWhole(entry.path());
    return files;
}

std::string Printable(const std::string& bytes) {
    std::ostringstream out;
    for (unsigned char c : bytes) {
        if (c >= 0x20 && c < 0x7F)
            out << c;
        else if (c == '\n')
            out << "\\n\n";
        else {
            char hex[8];
            snprintf(hex, sizeof hex, "\\x%02X", c);
            out << hex;
        }
    }
    return out.str();
}

struct RunResult {
    int exitCode = -1;
    std::string stdoutText;
    std::string stderrText;
};

// The binary of each program a case may name.
const std::map<std::string, std::string> kPrograms = {{"velor", VELOR_BINARY}, {"velor-walk", VELOR_WALK_BINARY}};

[[noreturn]] void ExecCompiler(const std::string& program, const fs::path& workDir, const fs::path& stdoutFile,
                               const fs::path& stderrFile, std::vector<std::string>& args,
                               std::vector<std::string>& env) {
    if (chdir(workDir.c_str()) != 0) _exit(126);
    int in = open("/dev/null", O_RDONLY);
    int out = open(stdoutFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    int err = open(stderrFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (in < 0 || out < 0 || err < 0) _exit(126);
    dup2(in, 0);
    dup2(out, 1);
    dup2(err, 2);
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (auto& arg : args) argv.push_back(arg.data());
    argv.push_back(nullptr);
    std::vector<char*> envp;
    for (auto& entry : env) envp.push_back(entry.data());
    envp.push_back(nullptr);
    alarm(kRunTimeLimitSeconds);
    execve(kPrograms.at(program).c_str(), argv.data(), envp.data());
    _exit(127);
}

RunResult RunCompiler(const std::string& program, const fs::path& workDir, const fs::path& captureDir,
                      std::vector<std::string> args, std::vector<std::string> env) {
    fs::path stdoutFile = captureDir / "stdout";
    fs::path stderrFile = captureDir / "stderr";
    pid_t child = fork();
    if (child == 0) ExecCompiler(program, workDir, stdoutFile, stderrFile, args, env);
    RunResult result;
    int status = 0;
    if (child > 0 && waitpid(child, &status, 0) == child) {
        if (WIFEXITED(status))
            result.exitCode = WEXITSTATUS(status);
        else if (WIFSIGNALED(status))
            result.exitCode = 128 + WTERMSIG(status);
    }
    result.stdoutText = ReadOptional(stdoutFile);
    result.stderrText = ReadOptional(stderrFile);
    return result;
}

class TempFolder {
public:
    TempFolder() {
        std::string pattern = (fs::temp_directory_path() / "velor-e2e-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
        fPath = fs::canonical(pattern);
    }
    ~TempFolder() {
        std::error_code ignored;
        fs::remove_all(fPath, ignored);
    }
    const fs::path& Path() const { return fPath; }

private:
    fs::path fPath;
};

class EndToEnd : public testing::TestWithParam<fs::path> {};

TEST_P(EndToEnd, Case) {
    const fs::path& caseDir = GetParam();
    TempFolder work, capture;
    const std::string tmp = work.Path().string();
    if (fs::exists(caseDir / "in")) fs::copy(caseDir / "in", work.Path(), fs::copy_options::recursive);
    std::map<std::string, std::string> expectedTree = FileTree(caseDir / "in");

    for (int step = 1;; ++step) {
        const std::string suffix = step == 1 ? "" : std::to_string(step);
        if (!fs::exists(caseDir / ("args" + suffix))) break;
        auto expand = [&](const std::string& text) { return ReplaceAll(text, "$TMP", tmp); };
        std::vector<std::string> args, env;
        for (auto& line : Lines(ReadWhole(caseDir / ("args" + suffix)))) args.push_back(expand(line));
        for (auto& line : Lines(ReadOptional(caseDir / ("env" + suffix)))) env.push_back(expand(line));

        std::string program = "velor";
        for (auto& line : Lines(ReadOptional(caseDir / ("command" + suffix)))) program = line;
        ASSERT_TRUE(kPrograms.count(program)) << "unknown program " << program << " in " << caseDir;
        RunResult run = RunCompiler(program, work.Path(), capture.Path(), args, env);
        SCOPED_TRACE("run " + std::to_string(step) + " of " + caseDir.string());
        EXPECT_EQ(Printable(expand(ReadOptional(caseDir / ("stderr" + suffix)))),
                  Printable(run.stderrText));
        EXPECT_EQ(Printable(expand(ReadOptional(caseDir / ("stdout" + suffix)))),
                  Printable(run.stdoutText));
        EXPECT_EQ(std::stoi(ReadOptional(caseDir / ("exit" + suffix), "0")), run.exitCode);
    }

    for (auto& [name, bytes] : FileTree(caseDir / "out")) expectedTree[name] = bytes;
    std::map<std::string, std::string> actualTree = FileTree(work.Path());
    for (auto& [name, bytes] : expectedTree) {
        auto found = actualTree.find(name);
        if (found == actualTree.end())
            ADD_FAILURE() << "missing output file " << name;
        else
            EXPECT_EQ(Printable(bytes), Printable(found->second)) << "in file " << name;
    }
    for (auto& [name, bytes] : actualTree)
        if (!expectedTree.count(name)) ADD_FAILURE() << "unexpected output file " << name;
}

std::vector<fs::path> AllCases() {
    std::vector<fs::path> cases;
    for (const auto& entry : fs::recursive_directory_iterator(VELOR_E2E_CASES))
        if (entry.is_regular_file() && entry.path().filename() == "args")
            cases.push_back(entry.path().parent_path());
    std::sort(cases.begin(), cases.end());
    return cases;
}

std::string CaseName(const testing::TestParamInfo<fs::path>& info) {
    std::string name = fs::relative(info.param, VELOR_E2E_CASES).generic_string();
    for (char& c : name)
        if (!isalnum(static_cast<unsigned char>(c))) c = '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(Cases, EndToEnd, testing::ValuesIn(AllCases()), CaseName);

}  // namespace
