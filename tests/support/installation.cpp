#include "support/installation.h"
#include "support/captured_stderr.h"
#include "support/time_scale.h"

#include "platform/paths.h"

#include <chrono>
#include <sstream>
#include <thread>

namespace vx::test {

Installation::Installation(const std::string& folderName, const std::filesystem::path& userData)
    : folder_(root_.path() / std::u8string(folderName.begin(), folderName.end())),
      userData_(userData.empty() ? root_.path() / "userdata" : userData),
      userDataEnv_("XDG_DATA_HOME", userData_.string())
{
    namespace fs = std::filesystem;
    fs::create_directories(folder_);
    for (const auto& entry : fs::directory_iterator(VEXLANE_BIN_DIR))
        fs::copy(entry.path(), folder_ / entry.path().filename(),
                 fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    // As an installation ships: the manager writes into these, it doesn't
    // make them.
    fs::create_directories(configs());
    fs::create_directories(logs());
}

std::unique_ptr<ChildProcess> Installation::startManager() const
{
    return ChildProcess::start(folder_ / (std::string("vexlane") + platform::executableSuffix), {});
}

bool waitFor(const std::function<bool()>& condition, int timeoutMs)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(scaledMs(timeoutMs));
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

int countLines(const std::filesystem::path& file, const std::string& text)
{
    std::istringstream in(readFileBytes(file));
    int n = 0;
    for (std::string line; std::getline(in, line);)
        if (line.find(text) != std::string::npos)
            ++n;
    return n;
}

long standInPid(const std::filesystem::path& log)
{
    long pid = 0;
    std::istringstream in(readFileBytes(log));
    for (std::string line; std::getline(in, line);)
        if (line.rfind("start pid=", 0) == 0)
            pid = std::stol(line.substr(10));
    return pid;
}

} // namespace vx::test
