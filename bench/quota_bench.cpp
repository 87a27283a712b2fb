// The video archive quota on a large archive: 100 streams of 1000 files each
// (100,000 files), spread over twenty day folders per stream ending today.
// Reports the full scan (the constructor) and one enforceQuota pass that
// lists the three day folders of every stream and deletes the oldest files
// until the archive is under its limit (ten files here), each beside a
// reference timed in the same run on the same tree: for the scan, a bare
// walk of the tree reading every file's size; for a pass, a bare listing of
// the same day folders. Medians of several runs. Targets: full scan under
// 500 ms, a pass under 20 ms.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <algorithm>
#include <vector>
#include <sys/resource.h>
#include <unistd.h>

#include "maintenance/video_archive.h"

namespace fs = std::filesystem;
using vx::maintenance::VideoArchive;

namespace {

double msSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// The process's CPU time (user + system, every thread) in milliseconds:
// steadier than the wall clock when others share the machine.
double cpuMs()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto ms = [](const timeval& t) { return t.tv_sec * 1000.0 + t.tv_usec / 1000.0; };
    return ms(usage.ru_utime) + ms(usage.ru_stime);
}

} // namespace

int main()
{
    const int streams = 100, filesPerStream = 1000, days = 20;
    const fs::path root = fs::temp_directory_path() / ("vx-quota-bench-" + std::to_string(::getpid()));
    const std::time_t now = std::time(nullptr);
    std::printf("building %d files below %s\n", streams * filesPerStream, root.c_str());
    double load[3] = {};
    if (::getloadavg(load, 3) == 3)
        std::printf("load average %.2f %.2f %.2f\n", load[0], load[1], load[2]);
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

    const auto median = [](std::vector<double> v) {
        std::sort(v.begin(), v.end());
        return v[v.size() / 2];
    };
    const std::uint32_t limitMb = static_cast<std::uint32_t>(streams * filesPerStream - 10);
    const int runs = 5;
    std::vector<double> scans, walks, passes, idlePasses, listings, scanCpu, walkCpu;
    std::uint64_t walked = 0;
    for (int run = 0; run < runs; ++run) {
        // The reference walk: every file's size, nothing else.
        auto start = std::chrono::steady_clock::now();
        double cpuStart = cpuMs();
        std::error_code ec;
        walked = 0;
        for (fs::recursive_directory_iterator it(root, ec), end; it != end; it.increment(ec))
            if (it->is_regular_file(ec))
                walked += it->file_size(ec);
        walks.push_back(msSince(start));
        walkCpu.push_back(cpuMs() - cpuStart);

        start = std::chrono::steady_clock::now();
        cpuStart = cpuMs();
        // Limit: 10 MB below what is there, so the pass deletes the ten oldest
        // files, as a pass does when the streams have written ten chunks since;
        // the deletions are not made (the next run needs the same tree).
        VideoArchive archive(root, limitMb,
                             {nullptr, [](const fs::path&) { return vx::platform::FileDeleteResult::deleted; },
                              [](const fs::path&) { return false; }});
        scans.push_back(msSince(start));
        scanCpu.push_back(cpuMs() - cpuStart);
        if (archive.totalBytes() != walked)
            std::printf("the scan indexed %llu bytes, the walk saw %llu\n",
                        static_cast<unsigned long long>(archive.totalBytes()),
                        static_cast<unsigned long long>(walked));

        // The reference listing: the three day folders of every stream.
        start = std::chrono::steady_clock::now();
        std::size_t entries = 0;
        for (int s = 0; s < streams; ++s)
            for (const std::string& day : VideoArchive::dayFolders(now))
                for (fs::directory_iterator it(root / ("stream" + std::to_string(s)) / day, ec), end; it != end;
                     it.increment(ec))
                    entries += it->path().filename().string().size() > 0;
        listings.push_back(msSince(start));

        start = std::chrono::steady_clock::now();
        archive.enforceQuota();
        passes.push_back(msSince(start));
        if (archive.totalBytes() >> 20 != static_cast<std::uint64_t>(limitMb))
            std::printf("the pass left %llu MB\n", static_cast<unsigned long long>(archive.totalBytes() >> 20));

        start = std::chrono::steady_clock::now();
        archive.enforceQuota();
        idlePasses.push_back(msSince(start));
    }
    const double scanMs = median(scans), walkMs = median(walks), passMs = median(passes),
                 idleMs = median(idlePasses), listMs = median(listings);
    std::printf("full scan: %.1f ms; reference bare walk with sizes %.1f ms; ratio %.2f (target < 500 ms)\n", scanMs,
                walkMs, scanMs / walkMs);
    std::printf("full scan CPU (every thread): %.1f ms; the walk's %.1f ms; ratio %.2f\n", median(scanCpu),
                median(walkCpu), median(scanCpu) / median(walkCpu));
    std::printf("enforceQuota pass with deletions: %.1f ms; reference bare listing of the three days %.1f ms; "
                "ratio %.2f (target < 20 ms)\n",
                passMs, listMs, passMs / listMs);
    std::printf("enforceQuota pass under the limit: %.1f ms; ratio %.2f to the same listing\n", idleMs,
                idleMs / listMs);

    std::error_code ec;
    fs::remove_all(root, ec);
    return scanMs < 500 && passMs < 20 ? 0 : 1;
}
