#pragma once
// A written file's text as its writer built it: the platform's line ends
// (CR LF on Windows) read back as "\n". Tests compare texts; the exact
// bytes on disk, line ends included, are the golden files' business
// (config/text_file_golden_test.cpp). And a path as a JSON file names it.
#include <cstring>
#include <filesystem>
#include <string>

#include "config/json_text.h"
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

// A path's UTF-8 text.
inline std::string utf8Path(const std::filesystem::path& path)
{
    const std::u8string utf8 = path.u8string();
    return std::string(utf8.begin(), utf8.end());
}

// A path's UTF-8 text with its backslashes doubled, as it stands between the
// quotes of a JSON file.
inline std::string jsonPath(const std::filesystem::path& path) { return config::doubleBackslashes(utf8Path(path)); }

} // namespace vx::test
