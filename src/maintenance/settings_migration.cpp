#include "maintenance/settings_migration.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include "platform/file_replace.h"
#include "platform/paths.h"
#include "platform/text_mode.h"

namespace vx::maintenance {

namespace fs = std::filesystem;

const char* const lastRunFileName = "lastrun.txt";

namespace {

fs::path readRemembered(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
        text.pop_back();
    return fs::path(std::u8string(text.begin(), text.end()));
}

// Written beside, then renamed over: a start that dies halfway leaves the
// old location or the new, never half of one.
void remember(const fs::path& file, const fs::path& current)
{
    fs::path part = file;
    part += ".part";
    std::string error;
    // UTF-8 on every platform (string() would be the ANSI code page on
    // Windows, which can't hold every folder name).
    const std::u8string utf8 = current.u8string();
    const std::string line = platform::toTextMode(std::string(utf8.begin(), utf8.end()) + '\n');
    if (!platform::writeWholeFile(part, line, error) || !platform::replaceFile(part, file, error))
        platform::removeFileQuietly(part);
}

bool sameFolder(const fs::path& a, const fs::path& b)
{
    std::error_code ec;
    if (fs::equivalent(a, b, ec))
        return true;
    return a.lexically_normal() == b.lexically_normal();
}

} // namespace

fs::path checkSettingsMigration(const fs::path& userData, const fs::path& current)
{
    if (userData.empty())
        return {};
    const fs::path file = userData / lastRunFileName;
    const fs::path earlier = readRemembered(file);
    remember(file, current);
    std::error_code ec;
    if (earlier.empty() || sameFolder(earlier, current) || !fs::is_directory(earlier / "configs", ec))
        return {};
    return earlier;
}

bool copyEarlierConfigs(const fs::path& earlier, const fs::path& current, std::string& error)
{
    // File by file through the platform's copy rather than fs::copy: the
    // Windows runtime takes two files for the same one (it has no inode
    // numbers) and refuses to copy over them.
    std::error_code ec;
    const fs::path from = earlier / "configs";
    const fs::path to = current / "configs";
    fs::create_directories(to, ec);
    fs::recursive_directory_iterator it(from, ec);
    for (; !ec && it != fs::recursive_directory_iterator(); it.increment(ec)) {
        const fs::path target = to / fs::relative(it->path(), from, ec);
        if (ec)
            break;
        if (it->is_directory(ec))
            fs::create_directories(target, ec);
        else if (!ec && !platform::copyFileOverwrite(it->path(), target, error))
            return false;
    }
    if (ec) {
        error = ec.message();
        return false;
    }
    return true;
}

} // namespace vx::maintenance
