#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// A fresh folder below the system's temporary folder, removed with everything in it at the end.
class TempFolder {
public:
    TempFolder() : fPath(MakeFolder()) {}
    ~TempFolder() { std::filesystem::remove_all(fPath); }

    std::string operator/(std::string const& relative) const { return (fPath / relative).string(); }
    bool Has(std::string const& relative) const { return std::filesystem::exists(fPath / relative); }

    // Writes a file, making its folders first.
    void Put(std::string const& relative, std::string const& contents = "") const {
        std::filesystem::create_directories((fPath / relative).parent_path());
        std::ofstream(fPath / relative, std::ios::binary) << contents;
    }
    std::string Read(std::string const& relative) const {
        std::ostringstream text;
        text << std::ifstream(fPath / relative, std::ios::binary).rdbuf();
        return text.str();
    }

private:
    static std::string MakeFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "velor-test-XXXXXX").string();
        return ::mkdtemp(pattern.data());
    }

    std::filesystem::path fPath;
};
