#pragma once
// Helpers of the stream tests: a system log for one scope, read back line
// by line without time stamps.
#include <memory>
#include <string>
#include <vector>

#include "maintenance/system_log.h"
#include "support/captured_stderr.h"
#include "support/temp_dir.h"

namespace vx::test {

class StreamLogCapture {
public:
    StreamLogCapture()
    {
        auto log = std::make_unique<maintenance::LogBuffer>(dir_.path() / "log.txt", maintenance::LogMode::appendQuiet);
        log->setMinLevel(0);
        maintenance::setSystemLog(std::move(log));
    }
    ~StreamLogCapture() { maintenance::setSystemLog(nullptr); }
    StreamLogCapture(const StreamLogCapture&) = delete;
    StreamLogCapture& operator=(const StreamLogCapture&) = delete;

    // "[LEVEL]text" of every line.
    std::vector<std::string> lines() const
    {
        std::vector<std::string> result;
        const std::string text = readFileBytes(dir_.path() / "log.txt");
        std::size_t start = 0;
        while (start < text.size()) {
            std::size_t end = text.find("\r\n", start);
            if (end == std::string::npos)
                end = text.size();
            const std::string line = text.substr(start, end - start);
            const auto cut = line.find(']');
            result.push_back(cut == std::string::npos ? line : line.substr(cut + 1));
            start = end + 2;
        }
        return result;
    }

private:
    TempDir dir_;
};

} // namespace vx::test
