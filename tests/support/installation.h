#pragma once
// A throw-away installation of the manager for integration tests: the built
// executables and images/ copied into a fresh folder (copied, not linked,
// because the manager takes its folder from its own executable's path), with
// empty configs/ and logs/ folders.
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "support/child_process.h"
#include "support/temp_dir.h"

namespace vx::test {

class Installation {
public:
    // `folderName` is the installation folder's own name below the temporary
    // folder; it may hold blanks and Cyrillic letters. XDG_DATA_HOME points
    // at `userData` while the object lives (by default a folder of its own),
    // so no manager started from here meets the real user's data folder.
    explicit Installation(const std::string& folderName = "vexlane",
                          const std::filesystem::path& userData = {});
    const std::filesystem::path& folder() const { return folder_; }
    std::filesystem::path configs() const { return folder_ / "configs"; }
    std::filesystem::path logs() const { return folder_ / "logs"; }
    const std::filesystem::path& userData() const { return userData_; }
    // Starts the installation's manager headless (QT_QPA_PLATFORM=offscreen
    // must be set by the caller's environment or the test runner).
    std::unique_ptr<ChildProcess> startManager() const;

private:
    TempDir root_;
    std::filesystem::path folder_;
    std::filesystem::path userData_;
    ScopedEnv userDataEnv_;
};

// Waits up to timeoutMs, looking every 20 ms, for `condition` to hold.
bool waitFor(const std::function<bool()>& condition, int timeoutMs);

// The lines of a log file that hold `text`.
int countLines(const std::filesystem::path& file, const std::string& text);

// The pid a service stand-in wrote into its log last ("start pid=N port=P");
// 0 when it never started.
long standInPid(const std::filesystem::path& log);

} // namespace vx::test
