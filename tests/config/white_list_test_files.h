#pragma once
// Small helpers of the white list tests: a config folder, its files as
// bytes, standard error captured.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "support/text_file.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

namespace vx::config::test {

// The text of a written file (line ends as "\n", see support/text_file.h).
inline std::string readBytes(const std::filesystem::path& path) { return vx::test::readText(path); }
inline void writeBytes(const std::filesystem::path& path, const std::string& bytes) { vx::test::writeFileBytes(path, bytes); }
using vx::test::CapturedStderr;

// A fresh config folder; its path is ASCII, so the 1251 text spells it the same.
class ConfigFolder {
public:
    std::string dir() const { return folder_.path().string(); }
    std::filesystem::path file(const std::string& name) const { return folder_.path() / name; }
    std::string bytes(const std::string& name) const { return readBytes(file(name)); }
    void put(const std::string& name, const std::string& text) const { writeBytes(file(name), text); }

private:
    vx::test::TempDir folder_;
};

} // namespace vx::config::test
