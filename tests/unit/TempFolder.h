#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// A fresh folder below the system's temporary folder, removed with everything in it at the end.
class TempFolder {
public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "velor-test-XXXXXX").string();
        fPath = ::mkdtemp(pattern.data());
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(fPath, ignored);
    }
    TempFolder(TempFolder const&) = delete;
    TempFolder& operator=(TempFolder const&) = delete;

    std::string operator/(std::string const& relative) const { return (fPath / relative).string(); }

    // Writes a file, making its folders first.
    void Put(std::string const& relative, std::string const& contents = "") const {
        std::filesystem::create_directories((fPath / relative).parent_path());
        std::ofstream(fPath / relative, std::ios::binary) << contents;
    }
    bool Has(std::string const& relative) const { return std::filesystem::exists(fPath / relative); }
    std::string Read(std::string const& relative) const {
        std::ifstream in(fPath / relative, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

private:
    std::filesystem::path fPath;
};
