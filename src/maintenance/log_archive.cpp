#include "maintenance/log_archive.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include "maintenance/local_time.h"

namespace fs = std::filesystem;

namespace vx::maintenance {
namespace {

const std::string archiveSuffix = "_arj.txt";

bool allDigits(const std::string& text, std::size_t from, std::size_t count)
{
    for (std::size_t i = from; i < from + count; ++i)
        if (text[i] < '0' || text[i] > '9')
            return false;
    return true;
}

// "[2024-05-01 10:20:30]Start" gives "2024-05-01_10-20-30".
std::string stampOfFirstLine(const fs::path& logFile)
{
    std::ifstream in(logFile, std::ios::binary);
    std::string line;
    if (!std::getline(in, line) || line.size() < 21 || line[0] != '[' || line[20] != ']')
        return {};
    if (!allDigits(line, 1, 4) || !allDigits(line, 6, 2) || !allDigits(line, 9, 2) ||
        !allDigits(line, 12, 2) || !allDigits(line, 15, 2) || !allDigits(line, 18, 2))
        return {};
    std::string stamp = line.substr(1, 19);
    stamp[10] = '_';
    stamp[13] = '-';
    stamp[16] = '-';
    return stamp;
}

std::string stampOfLastWrite(const fs::path& logFile)
{
    std::error_code error;
    const auto written = fs::last_write_time(logFile, error);
    if (error)
        return "0000-00-00_00-00-00";
    const auto system = std::chrono::file_clock::to_sys(written);
    return formatLocalTime(std::chrono::system_clock::to_time_t(
                               std::chrono::time_point_cast<std::chrono::system_clock::duration>(system)),
                           "%Y-%m-%d_%H-%M-%S");
}

bool endsWith(const std::string& text, const std::string& tail)
{
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

struct Archive {
    fs::path path;
    fs::file_time_type written;
};

void pruneArchive(const fs::path& folder, const std::string& stem, std::size_t keep, const fs::path& made)
{
    std::vector<Archive> archives;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        const std::string name = it->path().filename().string();
        std::error_code typeError;
        if (name.rfind(stem + "_", 0) != 0 || !endsWith(name, archiveSuffix) ||
            it->symlink_status(typeError).type() != fs::file_type::regular)
            continue;
        const auto written = fs::last_write_time(it->path(), typeError);
        if (!typeError)
            archives.push_back({it->path(), written});
    }
    if (archives.size() <= keep)
        return;
    // Newest first; equal times by name, for a stable order.
    std::sort(archives.begin(), archives.end(), [](const Archive& a, const Archive& b) {
        return a.written != b.written ? a.written > b.written : a.path.filename() > b.path.filename();
    });
    // burstStart[i]: the oldest archive of the burst that archive i is in.
    std::vector<std::size_t> burstStart(archives.size());
    for (std::size_t i = archives.size(); i-- > 0;)
        burstStart[i] = i + 1 < archives.size() && archives[i].written - archives[i + 1].written < logArchiveBurstGap
                            ? burstStart[i + 1]
                            : i;
    std::vector<bool> kept(archives.size(), false);
    for (std::size_t i = 0; i < archives.size(); ++i) {
        if (archives[i].path == made)
            kept[i] = true;
        if (i >= keep)
            continue;
        kept[i] = true;
        const std::size_t first = burstStart[i];
        for (std::size_t j = 0; j < logArchiveBurstKeep && first >= i + j; ++j)
            kept[first - j] = true;
    }
    for (std::size_t i = 0; i < archives.size(); ++i)
        if (!kept[i])
            fs::remove(archives[i].path, error);   // one that won't go stays for the next start
}

} // namespace

fs::path archiveLogFile(const fs::path& logFile, std::size_t keep)
{
    std::error_code error;
    if (!fs::is_regular_file(logFile, error) || fs::file_size(logFile, error) == 0 || error)
        return {};
    const fs::path folder = logFile.parent_path() / logArchiveFolderName;
    fs::create_directories(folder);

    std::string stamp = stampOfFirstLine(logFile);
    if (stamp.empty())
        stamp = stampOfLastWrite(logFile);
    const std::string stem = logFile.stem().string();
    fs::path target = folder / (stem + "_" + stamp + archiveSuffix);
    for (int n = 2; fs::exists(target) && n < 1000; ++n)
        target = folder / (stem + "_" + stamp + "_" + std::to_string(n) + archiveSuffix);
    fs::rename(logFile, target);
    pruneArchive(folder, stem, keep, target);
    return target;
}

} // namespace vx::maintenance
