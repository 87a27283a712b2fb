#include "platform/posix/window_files.h"

#include "platform/paths.h"
#include "platform/posix/unique_fd.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <sstream>

namespace vx::platform::posix {
namespace {

constexpr const char* kRecordMagic = "vexlane-window 1";
constexpr const char* kRecordSuffix = ".rec";
constexpr std::size_t kMaxRecordBytes = 64 * 1024;

bool readSmallFile(const std::string& path, std::string& text, std::size_t limit)
{
    UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!fd.valid())
        return false;
    text.clear();
    char buffer[4096];
    for (;;) {
        const ssize_t n = ::read(fd.get(), buffer, sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        if (n == 0)
            return true;
        text.append(buffer, static_cast<std::size_t>(n));
        if (text.size() > limit)
            return false;
    }
}

// A field with a length: "<key> <length>\n<bytes>\n".
bool readSized(std::istream& in, const char* key, std::string& value)
{
    std::string word;
    std::size_t length = 0;
    if (!(in >> word >> length) || word != key || length > kMaxRecordBytes || in.get() != '\n')
        return false;
    value.resize(length);
    if (!in.read(value.data(), static_cast<std::streamsize>(length)))
        return false;
    return in.get() == '\n';
}

} // namespace

std::string windowsFolder()
{
    const auto runtime = runtimeDirectory();
    if (runtime.empty())
        return {};
    std::string folder = runtime.native() + "/windows";
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        return {};
    return folder;
}

std::string handleText(WindowHandle handle)
{
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(handle));
    return text;
}

WindowHandle handleFromText(const std::string& text)
{
    if (text.size() != 16)
        return 0;
    WindowHandle handle = 0;
    for (char c : text) {
        int digit;
        if (c >= '0' && c <= '9')
            digit = c - '0';
        else if (c >= 'a' && c <= 'f')
            digit = c - 'a' + 10;
        else
            return 0;
        handle = handle << 4 | static_cast<WindowHandle>(digit);
    }
    return handle;
}

std::string socketPath(const std::string& folder, WindowHandle handle)
{
    return folder + "/" + handleText(handle);
}

std::string recordPath(const std::string& folder, WindowHandle handle)
{
    return socketPath(folder, handle) + kRecordSuffix;
}

std::optional<WindowRecord> readRecord(const std::string& path)
{
    std::string text;
    if (!readSmallFile(path, text, kMaxRecordBytes))
        return std::nullopt;
    std::istringstream in(text);
    std::string line, word;
    WindowRecord record;
    if (!std::getline(in, line) || line != kRecordMagic)
        return std::nullopt;
    if (!(in >> word >> record.pid) || word != "pid" || record.pid <= 0)
        return std::nullopt;
    if (!(in >> word >> record.startTime) || word != "start" || in.get() != '\n')
        return std::nullopt;
    if (!readSized(in, "class", record.className) || !readSized(in, "title", record.title))
        return std::nullopt;
    return record;
}

bool writeRecord(const std::string& folder, WindowHandle handle, const WindowRecord& record)
{
    std::ostringstream out;
    out << kRecordMagic << "\npid " << record.pid << "\nstart " << record.startTime << "\nclass "
        << record.className.size() << "\n" << record.className << "\ntitle " << record.title.size()
        << "\n" << record.title << "\n";
    const std::string text = out.str();
    // The temporary name starts with a dot, so a scan never mistakes it for a record.
    const std::string temp = folder + "/." + handleText(handle) + ".tmp";
    {
        UniqueFd fd(::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
        if (!fd.valid())
            return false;
        std::size_t done = 0;
        while (done < text.size()) {
            const ssize_t n = ::write(fd.get(), text.data() + done, text.size() - done);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0) {
                ::unlink(temp.c_str());
                return false;
            }
            done += static_cast<std::size_t>(n);
        }
    }
    if (::rename(temp.c_str(), recordPath(folder, handle).c_str()) != 0) {
        ::unlink(temp.c_str());
        return false;
    }
    return true;
}

unsigned long long processStartTime(long pid)
{
    std::string stat;
    if (!readSmallFile("/proc/" + std::to_string(pid) + "/stat", stat, 4096))
        return 0;
    // The command name in brackets may hold blanks; the fields after the last
    // ')' are: state (3), ... starttime (22).
    const auto close = stat.rfind(')');
    if (close == std::string::npos)
        return 0;
    std::istringstream in(stat.substr(close + 1));
    std::string field;
    for (int index = 3; index <= 22; ++index) {
        if (!(in >> field))
            return 0;
        if (index == 3 && (field == "Z" || field == "X"))
            return 0;   // dead, only not reaped yet
    }
    return std::strtoull(field.c_str(), nullptr, 10);
}

bool ownerAlive(const WindowRecord& record)
{
    if (record.pid <= 0)
        return false;
    if (::kill(static_cast<pid_t>(record.pid), 0) != 0 && errno != EPERM)
        return false;
    const unsigned long long start = processStartTime(record.pid);
    if (start == 0)
        // No /proc entry to read: a zombie, or a system without /proc. kill()
        // said the pid is taken; /proc being readable tells which case it is.
        return !fileExists("/proc/self/stat");
    return record.startTime == 0 || record.startTime == start;
}

std::vector<WindowHandle> listRecords(const std::string& folder)
{
    std::vector<WindowHandle> handles;
    DIR* dir = ::opendir(folder.c_str());
    if (!dir)
        return handles;
    const std::string suffix = kRecordSuffix;
    while (const dirent* entry = ::readdir(dir)) {
        const std::string name = entry->d_name;
        if (name.size() != 16 + suffix.size() || name.compare(16, suffix.size(), suffix) != 0)
            continue;
        if (const WindowHandle handle = handleFromText(name.substr(0, 16)))
            handles.push_back(handle);
    }
    ::closedir(dir);
    std::sort(handles.begin(), handles.end());
    return handles;
}

void removeWindowFiles(const std::string& folder, WindowHandle handle)
{
    ::unlink(recordPath(folder, handle).c_str());
    ::unlink(socketPath(folder, handle).c_str());
}

} // namespace vx::platform::posix
