#pragma once
// Test helpers around files and standard error.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace vx::test {

// Everything written to std::cerr while the object lives.
class CapturedStderr {
public:
    CapturedStderr() : previous_(std::cerr.rdbuf(buffer_.rdbuf())) {}
    ~CapturedStderr() { std::cerr.rdbuf(previous_); }
    CapturedStderr(const CapturedStderr&) = delete;
    CapturedStderr& operator=(const CapturedStderr&) = delete;
    std::string text() const { return buffer_.str(); }

private:
    std::ostringstream buffer_;
    std::streambuf* previous_;
};

inline std::string readFileBytes(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

inline void writeFileBytes(const std::filesystem::path& path, const std::string& bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

// The texts of a log file's lines: without CR and without the time stamp
// "[YYYY-MM-DD HH:MM:SS]" (a line that came through standard error keeps
// the blank after it).
inline std::vector<std::string> logTexts(const std::filesystem::path& file)
{
    std::vector<std::string> lines;
    std::istringstream in(readFileBytes(file));
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        lines.push_back(line.size() > 21 ? line.substr(21) : "");
    }
    return lines;
}

} // namespace vx::test
