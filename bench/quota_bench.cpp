// The video archive quota on a large archive: 100 streams of 1000 files each
// (100,000 files), spread over twenty day folders per stream ending today.
// Reports the full scan (the constructor) and one enforceQuota pass that
// lists the three day folders of every stream and deletes the oldest files
// until the archive is under its limit (ten files here). Targets on the reference machine:
// full scan under 2 s, a pass under 50 ms.
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "maintenance/video_archive.h"

namespace fs = std::filesystem;
using vx::maintenance::VideoArchive;

namespace {

double msSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

} // namespace

int main()
{
    const int streams = 100, filesPerStream = 1000, days = 20;
    const fs::path root = fs::temp_directory_path() / ("vx-quota-bench-" + std::to_string(::getpid()));
    const std::time_t now = std::time(nullptr);
    std::printf("building %d files below %s\n", streams * filesPerStream, root.c_str());
    fs::path lastFolder;
    for (int s = 0; s < streams; ++s) {
        for (int f = 0; f < filesPerStream; ++f) {
            // Day 0 is today; files run back over `days` days, 1 MB each (sparse).
            const int dayBack = f * days / filesPerStream;
            const std::time_t when = now - dayBack * 86400 - (f % 50) * 60;
            std::tm t{};
            ::localtime_r(&when, &t);
            char day[48], name[160];
            std::snprintf(day, sizeof day, "%04d_%02d_%02d", t.tm_year + 1900, t.tm_mon + 1, t.tm_mday);
            std::snprintf(name, sizeof name, "video_stream_%d_%s_%02d_%02d_%02d.webm", s, day, t.tm_hour, t.tm_min,
                          t.tm_sec);
            const fs::path folder = root / ("stream" + std::to_string(s)) / day;
            if (folder != lastFolder)
                fs::create_directories(folder);
            lastFolder = folder;
            std::ofstream(folder / name).put('x');
            fs::resize_file(folder / name, 1 << 20);
        }
    }

    auto start = std::chrono::steady_clock::now();
    // Limit: 10 MB below what is there, so the pass deletes the ten oldest
    // files, as a pass does when the streams have written ten chunks since.
    VideoArchive archive(root, static_cast<std::uint32_t>(streams * filesPerStream - 10));
    const double scanMs = msSince(start);
    std::printf("full scan: %.1f ms, %llu MB indexed (target < 2000 ms)\n", scanMs,
                static_cast<unsigned long long>(archive.totalBytes() >> 20));

    start = std::chrono::steady_clock::now();
    archive.enforceQuota();
    const double passMs = msSince(start);
    std::printf("enforceQuota pass with deletions: %.1f ms, %llu MB left (target < 50 ms)\n", passMs,
                static_cast<unsigned long long>(archive.totalBytes() >> 20));

    start = std::chrono::steady_clock::now();
    archive.enforceQuota();
    std::printf("enforceQuota pass under the limit: %.1f ms\n", msSince(start));

    std::error_code ec;
    fs::remove_all(root, ec);
    return scanMs < 2000 && passMs < 50 ? 0 : 1;
}
