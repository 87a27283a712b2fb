// The manager's CPU time per tick with N live streams (the first argument,
// 16 unless given, at most 100): a temporary
// installation with 16 streams on the generated videos (no services, so the
// watch has nothing to start once the streams run), the real `vexlane`
// started headless on it, and its utime + stime from /proc/<pid>/stat read
// over at least 30 ticks once every stream runs, beside the reference: the
// mean CPU share of one stream process over the same seconds. Also the
// manager's resident memory at the end. Targets: at most 1% of one core at
// 16 streams, 5% and 150 MB at 100. Everything it started is ended at its end.
//     tick_cpu_bench 16
//     tick_cpu_bench 100
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <signal.h>
#include <spawn.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

extern char** environ;
namespace fs = std::filesystem;

namespace {

std::string readText(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// utime + stime in clock ticks of /proc/<pid>/stat.
long long cpuTicks(long pid)
{
    const std::string stat = readText("/proc/" + std::to_string(pid) + "/stat");
    const auto close = stat.rfind(')');
    if (close == std::string::npos)
        return -1;
    std::istringstream in(stat.substr(close + 2));
    std::string field;
    long long utime = 0, stime = 0;
    for (int i = 3; i <= 15 && in >> field; ++i) {
        if (i == 14) utime = std::stoll(field);
        if (i == 15) stime = std::stoll(field);
    }
    return utime + stime;
}

void write(const fs::path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

// Live processes whose command line names `folder`, or whose folder it is.
std::vector<long> processesOf(const fs::path& folder)
{
    std::vector<long> pids;
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator("/proc", ec)) {
        const std::string name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        std::error_code e;
        const fs::path cwd = fs::read_symlink(entry.path() / "cwd", e);
        if (readText(entry.path() / "cmdline").find(folder.string()) != std::string::npos || (!e && cwd == folder))
            pids.push_back(std::stol(name));
    }
    return pids;
}

// The resident memory in MB from /proc/<pid>/status, -1 when unknown.
double residentMb(long pid)
{
    const std::string status = readText("/proc/" + std::to_string(pid) + "/status");
    const auto at = status.find("VmRSS:");
    return at == std::string::npos ? -1.0 : std::stod(status.substr(at + 6)) / 1024.0;
}

} // namespace

int main(int argc, char** argv)
{
    const int streams = std::clamp(argc > 1 ? std::atoi(argv[1]) : 16, 1, 100), ticks = 30;
    const fs::path root = fs::temp_directory_path() / ("vx-tick-bench-" + std::to_string(::getpid()));
    const fs::path folder = root / "vexlane";
    fs::create_directories(root / "run");
    fs::permissions(root / "run", fs::perms::owner_all);
    ::setenv("XDG_RUNTIME_DIR", (root / "run").c_str(), 1);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    fs::create_directories(folder);
    for (const auto& entry : fs::directory_iterator(VEXLANE_BIN_DIR))
        fs::copy(entry.path(), folder / entry.path().filename(), fs::copy_options::recursive);
    fs::create_directories(folder / "configs");
    fs::create_directories(folder / "logs");
    const std::string video = std::string(VEXLANE_BIN_DIR) + "/demo_videos/parking.avi";
    const int base = 500000 + ::getpid() % 10000 * 20;
    std::string list, flags;
    for (int i = 0; i < streams; ++i) {
        const std::string file = "vx_stream" + std::to_string(base + i) + ".json";
        write(folder / "configs" / file,
              "{\"Common\":{\"videoName\":\"Bench" + std::to_string(base + i) + "\",\"videoPath\":\"" + video +
                  "\",\"fps\":5,\"autoRun\":true,\"ID\":" + std::to_string(base + i) +
                  "},\"Recognition\":{},\"ControlReport\":{}}");
        list += (i ? ",\"" : "\"") + file + "\"";
        flags += i ? ",true" : "true";
    }
    const std::string logs = (folder / "logs").string();
    // The watch starts the streams; the services stay off (startStatus on,
    // but no service runs: their starts would cost the manager nothing
    // per tick once made, and their ports could meet other programs').
    write(folder / "configs" / "vx_main_config.json",
          "{\"systemLogPath\":\"" + logs + "\",\"recogLogPath\":\"" + logs +
              "\",\"systemLevel\":3,\"startStatus\":true,\"globalRestart\":true,\"videoStreams\":[" + list +
              "],\"autoRunStreams\":[" + flags + "]}");

    pid_t manager = 0;
    const std::string program = (folder / "vexlane").string();
    char* managerArgv[] = {const_cast<char*>(program.c_str()), nullptr};
    if (posix_spawn(&manager, program.c_str(), nullptr, nullptr, managerArgv, environ) != 0) {
        std::fprintf(stderr, "vexlane can't be started\n");
        return 2;
    }
    std::printf("waiting for %d streams to answer...\n", streams);
    bool ready = false;
    for (int i = 0; i < 240 && !ready; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        ready = static_cast<int>(processesOf(folder).size()) >= streams + 1;   // the streams and the manager
    }
    // Settle: the last starts end, the pictures flow.
    std::this_thread::sleep_for(std::chrono::seconds(5));
    std::vector<long> children;
    for (long pid : processesOf(folder))
        if (pid != manager)
            children.push_back(pid);
    std::vector<long long> childrenBefore;
    for (long pid : children)
        childrenBefore.push_back(cpuTicks(pid));
    const long long before = cpuTicks(manager);
    const auto start = std::chrono::steady_clock::now();
    std::this_thread::sleep_for(std::chrono::seconds(ticks));
    const long long after = cpuTicks(manager);
    long long childTicks = 0;
    int counted = 0;
    for (std::size_t i = 0; i < children.size(); ++i) {
        const long long now = cpuTicks(children[i]);
        if (now >= 0 && childrenBefore[i] >= 0) {
            childTicks += now - childrenBefore[i];
            ++counted;
        }
    }
    const double memoryMb = residentMb(manager);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    const double cpuSeconds = static_cast<double>(after - before) / static_cast<double>(::sysconf(_SC_CLK_TCK));
    const double share = 100.0 * cpuSeconds / seconds;
    std::printf("streams started: %s (the log at its usual level 3)\n", ready ? "all" : "not all");
    const double streamShare =
        counted ? 100.0 * static_cast<double>(childTicks) / counted / static_cast<double>(::sysconf(_SC_CLK_TCK)) / seconds
                : 0.0;
    std::printf("manager CPU at %d streams: %.3f s over %.1f s = %.2f ms per tick, %.2f%% of one core "
                "(target %s); reference one stream process %.2f%%; ratio %.2f\n",
                streams, cpuSeconds, seconds, 1000.0 * cpuSeconds / seconds, share,
                streams > 16 ? "<= 5% at 100" : "<= 1% at 16", streamShare, streamShare > 0 ? share / streamShare : 0.0);
    std::printf("manager resident memory: %.1f MB (target <= 150 MB at 100)\n", memoryMb);

    ::kill(manager, SIGTERM);
    int status = 0;
    for (int i = 0; i < 100 && ::waitpid(manager, &status, WNOHANG) == 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    ::kill(manager, SIGKILL);
    ::waitpid(manager, &status, WNOHANG);
    for (long pid : processesOf(folder))
        ::kill(static_cast<pid_t>(pid), SIGKILL);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    std::error_code ec;
    fs::remove_all(root, ec);
    return ready && share <= (streams > 16 ? 5.0 : 1.0) ? 0 : 1;
}
