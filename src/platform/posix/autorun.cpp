// The POSIX side of autorun.h: an XDG autostart desktop entry. The file is
// written beside its final name and renamed over it, so a session that
// starts meanwhile never reads half an entry.
#include "platform/autorun.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <iostream>
#include <system_error>

namespace vx::platform {

namespace {

std::filesystem::path configHome()
{
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    if (xdg && xdg[0] == '/')
        return xdg;
    const char* home = std::getenv("HOME");
    return std::filesystem::path(home ? home : "") / ".config";
}

std::filesystem::path autostartFolder()
{
    return configHome() / "autostart";
}

// The path as one word of an Exec= line. A plain path stands as it is, as the
// first platform stores it; one with a blank or another reserved character
// must be quoted there, or the session would split it (the first platform's
// entry is one value and needs no quotes). '%' starts a field code and is
// doubled; the value's own escape doubles every backslash afterwards.
std::string execWord(const std::string& path)
{
    const std::string reserved = " \t\n\"'\\><~|&;$*?#()`";
    std::string word;
    const bool quote = path.find_first_of(reserved) != std::string::npos;
    for (char c : path) {
        if (c == '%')
            word += "%%";
        else if (quote && (c == '"' || c == '`' || c == '$' || c == '\\'))
            word += std::string("\\") + c;
        else
            word += c;
    }
    if (quote)
        word = "\"" + word + "\"";
    std::string value;
    for (char c : word) {
        if (c == '\\')
            value += "\\\\";
        else if (c == '\n')
            value += "\\n";
        else
            value += c;
    }
    return value;
}

std::string entryText(const std::string& name, const std::filesystem::path& path)
{
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=" + name + "\n"
           "Exec=" + execWord(path.native()) + "\n"
           "X-GNOME-Autostart-enabled=true\n";
}

bool writeWhole(int fd, const std::string& text)
{
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

// 0 on success, else the error number.
int storeEntry(const std::filesystem::path& file, const std::string& text)
{
    const std::filesystem::path temporary = file.native() + ".tmp";
    const int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return errno;
    int error = writeWhole(fd, text) ? 0 : (errno ? errno : EIO);
    if (::close(fd) != 0 && error == 0)
        error = errno;
    if (error == 0 && ::rename(temporary.c_str(), file.c_str()) != 0)
        error = errno;
    if (error != 0)
        ::unlink(temporary.c_str());
    return error;
}

} // namespace

std::filesystem::path autorunEntryPath(const std::string& name)
{
    return autostartFolder() / (name + ".desktop");
}

bool setAutorun(const std::string& name, const std::filesystem::path& path, bool enabled)
{
    // Opening the key: the folder must be there and be a folder.
    const std::filesystem::path folder = autostartFolder();
    std::error_code ec;
    std::filesystem::create_directories(folder, ec);
    if (!ec && !std::filesystem::is_directory(folder, ec) && !ec)
        ec = std::make_error_code(std::errc::not_a_directory);
    if (ec) {
        std::cerr << "Failed to open registry key. Error: " << ec.value() << std::endl;
        return false;
    }
    const std::filesystem::path file = folder / (name + ".desktop");
    if (enabled) {
        if (const int error = storeEntry(file, entryText(name, path)); error != 0) {
            std::cerr << "Failed to set autorun. Error: " << error << std::endl;
            return false;
        }
        return true;
    }
    // An entry that isn't there counts as removed.
    if (::unlink(file.c_str()) != 0 && errno != ENOENT) {
        std::cerr << "Failed to remove autorun. Error: " << errno << std::endl;
        return false;
    }
    return true;
}

} // namespace vx::platform
