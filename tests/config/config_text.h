#pragma once
// A written file's text as its writer built it: the platform's line ends
// (CR LF on Windows) read back as "\n". The config tests compare texts; the
// exact bytes on disk, line ends included, are the golden files' business
// (text_file_golden_test.cpp).
#include <cstring>
#include <filesystem>
#include <string>

#include "platform/text_mode.h"
#include "support/captured_stderr.h"

namespace vx::test {

inline std::string readText(const std::filesystem::path& path)
{
    std::string bytes = readFileBytes(path);
    if (std::strcmp(platform::textLineEnd, "\n") == 0)
        return bytes;
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (!(bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n'))
            text.push_back(bytes[i]);
    return text;
}

} // namespace vx::test
