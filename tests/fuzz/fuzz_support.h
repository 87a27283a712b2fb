#pragma once
// What the fuzz inputs share: a private folder for the readers that take a
// path, writing an input there, silencing standard error, and the check
// that ends the run when a reader breaks a promise.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <streambuf>
#include <string>

namespace vx::fuzz {

// This process's folder for inputs, made on first use and removed at exit.
const std::filesystem::path& fuzzFolder();

// Writes `bytes` as the whole file `path`.
void putFile(const std::filesystem::path& path, const std::string& bytes);

// Aborts with `what` on standard error (the real one) when `condition` is false.
void check(bool condition, const char* what);

// The copies the readers and writers keep beside a file they replace
// (".bak", ".broken", ".tmp"): removed after each input so the folder
// doesn't grow with the run.
void removeKeptCopies(const std::filesystem::path& folder);

inline std::string inputText(const std::uint8_t* data, std::size_t size)
{
    return std::string(reinterpret_cast<const char*>(data), size);
}

// Standard error taken away for the object's life: the readers report
// every broken input there.
class SilencedStderr {
public:
    SilencedStderr() : previous_(std::cerr.rdbuf(&buffer_)) {}
    ~SilencedStderr() { std::cerr.rdbuf(previous_); }
    SilencedStderr(const SilencedStderr&) = delete;
    SilencedStderr& operator=(const SilencedStderr&) = delete;

private:
    class NullBuffer : public std::streambuf {
    protected:
        int overflow(int c) override { return c; }
        std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
    };
    NullBuffer buffer_;
    std::streambuf* previous_;
};

} // namespace vx::fuzz
