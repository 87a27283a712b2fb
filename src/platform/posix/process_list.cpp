// The process snapshot on POSIX: /proc, one folder per process. The image
// name is the base name of /proc/<pid>/exe; where that link can't be read
// (another user's process, a kernel thread) the name in /proc/<pid>/comm
// stands in. Processes that have ended but aren't reaped yet are left out,
// so a service killed a moment ago doesn't count as running.
#include "platform/process.h"

#include <cctype>
#include <fstream>
#include <sstream>

namespace vx::platform {

namespace {

const std::string deletedMark = " (deleted)";

bool isNumber(const std::string& text)
{
    if (text.empty())
        return false;
    for (char c : text)
        if (!std::isdigit(static_cast<unsigned char>(c)))
            return false;
    return true;
}

// The state letter of /proc/<pid>/stat, after the parenthesised name.
char processState(const std::filesystem::path& folder)
{
    std::ifstream in(folder / "stat");
    std::stringstream text;
    text << in.rdbuf();
    const std::string stat = text.str();
    const auto close = stat.rfind(')');
    if (close == std::string::npos || close + 2 >= stat.size())
        return '?';
    return stat[close + 2];
}

} // namespace

bool sameImageName(const std::string& a, const std::string& b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

std::vector<ProcessEntry> listProcesses()
{
    std::vector<ProcessEntry> entries;
    std::error_code ec;
    std::filesystem::directory_iterator it("/proc", ec);
    if (ec)
        return entries;
    for (const auto& folder : it) {
        const std::string name = folder.path().filename().string();
        if (!isNumber(name))
            continue;
        const char state = processState(folder.path());
        if (state == 'Z' || state == 'X' || state == '?')
            continue;
        ProcessEntry entry;
        entry.pid = std::stol(name);
        std::error_code linkError;
        std::string executable = std::filesystem::read_symlink(folder.path() / "exe", linkError).string();
        if (!linkError && !executable.empty()) {
            // A program replaced on disk while it runs keeps its old name.
            if (executable.size() > deletedMark.size() &&
                executable.compare(executable.size() - deletedMark.size(), deletedMark.size(), deletedMark) == 0)
                executable.resize(executable.size() - deletedMark.size());
            entry.executable = executable;
            entry.imageName = entry.executable.filename().string();
        } else {
            std::ifstream comm(folder.path() / "comm");
            std::getline(comm, entry.imageName);
        }
        if (!entry.imageName.empty())
            entries.push_back(std::move(entry));
    }
    return entries;
}

long findProcessByName(const std::string& imageName)
{
    for (const ProcessEntry& entry : listProcesses())
        if (sameImageName(entry.imageName, imageName))
            return entry.pid;
    return 0;
}

} // namespace vx::platform
