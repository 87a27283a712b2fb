// The process snapshot on POSIX: /proc, one folder per process. The image
// name is the base name of /proc/<pid>/exe; where that link can't be read
// (another user's process, a kernel thread) the name in /proc/<pid>/comm
// stands in. Processes that have ended but aren't reaped yet are left out,
// so a service killed a moment ago doesn't count as running.
#include "platform/process.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cctype>
#include <cstring>
#include <memory>

#include "platform/posix/unique_fd.h"

// The watch lists the processes several times a second on a machine that may
// run hundreds of them: the scan reads /proc with plain calls into buffers on
// the stack, with no stream or path object made per process.
namespace vx::platform {

namespace {

const std::string deletedMark = " (deleted)";

bool isNumber(const char* text)
{
    if (*text == '\0')
        return false;
    for (; *text; ++text)
        if (!std::isdigit(static_cast<unsigned char>(*text)))
            return false;
    return true;
}

// The whole of a small /proc file into `buffer`; its length, -1 when it
// can't be read.
long readSmall(const std::string& path, char* buffer, std::size_t size)
{
    posix::UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!fd.valid())
        return -1;
    std::size_t length = 0;
    while (length < size) {
        const ssize_t got = ::read(fd.get(), buffer + length, size - length);
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        length += static_cast<std::size_t>(got);
    }
    return static_cast<long>(length);
}

// The state letter of /proc/<pid>/stat, after the parenthesised name.
char processState(const std::string& folder)
{
    char stat[4096];
    const long length = readSmall(folder + "stat", stat, sizeof stat);
    if (length <= 0)
        return '?';
    const std::string_view text(stat, static_cast<std::size_t>(length));
    const auto close = text.rfind(')');
    if (close == std::string_view::npos || close + 2 >= text.size())
        return '?';
    return text[close + 2];
}

bool live(const std::string& folder)
{
    const char state = processState(folder);
    return !(state == 'Z' || state == 'X' || state == '?');
}

// The image name and executable of the process whose /proc folder is
// `folder` ("/proc/<pid>/"): the base name of its exe link, else the first
// line of comm. True when the link was read: the process still had its
// memory then, so it hadn't ended (an ended process loses its memory before
// it becomes a zombie, and its link with it), and its state needn't be read.
bool readImage(const std::string& folder, std::string& imageName, std::string& executable)
{
    char link[4096];
    const ssize_t length = ::readlink((folder + "exe").c_str(), link, sizeof link);
    if (length > 0 && static_cast<std::size_t>(length) < sizeof link) {
        executable.assign(link, static_cast<std::size_t>(length));
        // A program replaced on disk while it runs keeps its old name.
        if (executable.size() > deletedMark.size() &&
            executable.compare(executable.size() - deletedMark.size(), deletedMark.size(), deletedMark) == 0)
            executable.resize(executable.size() - deletedMark.size());
        imageName = std::filesystem::path(executable).filename().string();
        return true;
    }
    executable.clear();
    imageName.clear();
    char comm[256];
    const long got = readSmall(folder + "comm", comm, sizeof comm);
    if (got > 0) {
        const char* end = static_cast<const char*>(std::memchr(comm, '\n', static_cast<std::size_t>(got)));
        imageName.assign(comm, end ? static_cast<std::size_t>(end - comm) : static_cast<std::size_t>(got));
    }
    return false;
}

// Calls `visit(pid, folder)` for each process of /proc, `folder` being
// "/proc/<pid>/", until it returns true.
template <typename Visit>
void forEachProcess(Visit visit)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> proc(::opendir("/proc"), &::closedir);
    if (!proc)
        return;
    std::string folder;
    while (const dirent* item = ::readdir(proc.get())) {
        if (!isNumber(item->d_name))
            continue;
        folder.assign("/proc/").append(item->d_name).append("/");
        if (visit(std::strtol(item->d_name, nullptr, 10), folder))
            return;
    }
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
    std::string imageName, executable;
    forEachProcess([&](long pid, const std::string& folder) {
        if (!readImage(folder, imageName, executable) && !live(folder))
            return false;
        if (!imageName.empty()) {
            ProcessEntry entry;
            entry.pid = pid;
            entry.imageName = imageName;
            entry.executable = executable;
            entries.push_back(std::move(entry));
        }
        return false;
    });
    return entries;
}

// The same answer as a search of listProcesses(), with the state read only
// for a process of that name whose link can't be read.
long findProcessByName(const std::string& imageName)
{
    long found = 0;
    std::string name, executable;
    forEachProcess([&](long pid, const std::string& folder) {
        const bool linked = readImage(folder, name, executable);
        if (name.empty() || !sameImageName(name, imageName) || (!linked && !live(folder)))
            return false;
        found = pid;
        return true;
    });
    return found;
}

} // namespace vx::platform
