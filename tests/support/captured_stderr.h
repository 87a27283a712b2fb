#pragma once
// Test helpers around files and standard error.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

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

} // namespace vx::test
