// The stream process's own CPU cost on a 1280x720, 10 frames a second H.264
// file (made here by the `ffmpeg` program), in three modes measured one after
// the other:
//   (a) the stream alone: no stills, no recording;
//   (b) a still asked every second at 320 by 320, through the manager's own
//       request path (requestImage, then onCopyData on the notification);
//   (c) recording on (the camera's own size, VP8 chunks).
// Each mode's vxVideoStream runs beside the reference, started with it and
// timed over the same seconds: `ffmpeg -re -stream_loop -1 -i <file> -f null -`,
// a bare decode of the same file at its own rate, as the stream plays it.
// The CPU of each is utime + stime of /proc/<pid>/stat; the figure is CPU
// seconds per second, and the ratio is the stream's to the reference's. The
// machine may be shared: the load average is printed before and after, and
// only the ratios compare between runs. Targets: (a) and (b) at most 1.3.
// With --callgrind, (a) and (b) and their references run under valgrind's
// callgrind instead, counters zeroed after the start and dumped at the end
// of the same seconds (callgrind_control), and the figure is instructions
// per frame decoded (per call of FFmpeg's avcodec_send_packet, which both
// make once a frame): counts a loaded machine doesn't change.
// Everything it starts it ends, by pid; every wait is bounded.
//     stream_cost_bench [seconds per mode, 20 unless given] [path of vxVideoStream]
//     stream_cost_bench --callgrind [seconds per mode] [path of vxVideoStream]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <future>
#include <map>
#include <signal.h>
#include <spawn.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "config/camera_config.h"
#include "proc_figures.h"
#include "config/text_codec.h"
#include "platform/window_endpoint.h"
#include "supervision/stream_channel.h"

extern char** environ;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

using namespace vx;
using bench::cpuTicks;
using bench::readText;

std::string loadAverage()
{
    std::istringstream in(readText("/proc/loadavg"));
    std::string one, five, fifteen;
    in >> one >> five >> fifteen;
    return one + ", " + five + ", " + fifteen;
}

// Starts argv[0] (looked for on PATH) with standard output and error to
// `output`; 0 when it can't be started.
pid_t spawn(const std::vector<std::string>& args, const fs::path& output)
{
    std::vector<char*> argv;
    for (const std::string& a : args)
        argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    posix_spawn_file_actions_adddup2(&actions, 1, 2);
    pid_t pid = 0;
    const int failed = posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return failed ? 0 : pid;
}

// Waits up to `ms` for `pid` to end; true when it did (and was reaped).
bool waitExit(pid_t pid, int ms, int* status = nullptr)
{
    int s = 0;
    for (int i = 0; i <= ms / 20; ++i) {
        if (::waitpid(pid, &s, WNOHANG) == pid) {
            if (status)
                *status = s;
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

// Ends a child: SIGTERM, a short wait, then SIGKILL.
void end(pid_t pid)
{
    if (pid <= 0)
        return;
    ::kill(pid, SIGTERM);
    if (!waitExit(pid, 3000)) {
        ::kill(pid, SIGKILL);
        waitExit(pid, 3000);
    }
}

// Under callgrind: the total of instructions (its "summary:" line) and the
// calls made to functions whose name holds `callee`, of a callgrind output.
struct Instructions {
    double total = 0;
    long long calls = 0;
};

Instructions countInstructions(const fs::path& file, const std::string& callee)
{
    Instructions result;
    std::ifstream in(file);
    std::map<std::string, std::string> names;   // "(12)" -> its name
    bool counting = false;
    std::string line;
    while (std::getline(in, line)) {
        if (line.rfind("summary:", 0) == 0) {
            result.total = std::stod(line.substr(8));
        } else if (line.rfind("cfn=", 0) == 0 || line.rfind("fn=", 0) == 0) {
            const std::string rest = line.substr(line.find('=') + 1);
            const auto space = rest.find(' ');
            std::string name = rest;
            if (rest[0] == '(') {
                const std::string id = rest.substr(0, rest.find(')') + 1);
                if (space != std::string::npos)
                    names[id] = rest.substr(space + 1);
                name = names[id];
            }
            counting = line[0] == 'c' && name.find(callee) != std::string::npos;
        } else if (line.rfind("calls=", 0) == 0) {
            if (counting)
                result.calls += std::stoll(line.substr(6));
            counting = false;
        }
    }
    return result;
}

struct Figure {
    double stream = -1;      // CPU seconds per second
    double reference = -1;
    double seconds = 0;
    int stills = 0;          // pictures the manager got back (mode b)
    int asked = 0;
};

enum class Mode { Plain, Stills, Recording };

class Bench {
public:
    Bench(fs::path root, std::string streamProgram, int seconds)
        : root_(std::move(root)), program_(std::move(streamProgram)), seconds_(seconds)
    {
    }

    // From now on the stream and its reference run under callgrind, their
    // counts of the measured seconds into <out>.1 and <out>.ref.1.
    void underCallgrind(const fs::path& out) { callgrindOut_ = out; }

    bool makeSource()
    {
        // A moving test picture with some grain (a camera's picture is never
        // clean), at a camera's usual rate and GOP: 2 Mbit/s, no B-frames.
        const int status = run({"ffmpeg", "-nostdin", "-v", "error", "-y", "-f", "lavfi", "-i",
                                "testsrc2=size=1280x720:rate=10,noise=alls=12:allf=t", "-t", "40", "-c:v", "libx264",
                                "-preset", "veryfast", "-profile:v", "main", "-bf", "0", "-g", "20", "-b:v", "2M",
                                "-pix_fmt", "yuv420p", source().string()},
                               600000);
        return status == 0 && fs::exists(source()) && fs::file_size(source()) > 0;
    }

    Figure measure(Mode mode, int index)
    {
        Figure figure;
        const std::int32_t id = 920000 + ::getpid() % 10000 * 4 + index;
        config::CameraConfig camera;
        camera.common.ID = id;
        camera.common.videoName = "cost" + std::to_string(id);
        camera.common.videoPath = source().string();
        camera.common.fps = 10.0f;
        camera.common.writeVideo = mode == Mode::Recording;
        camera.common.videoChunk = 300;
        const std::string file = config::cameraFilePath(root_.string(), id);
        config::saveCamera(file, camera, 1234, 1235);
        fs::create_directories(root_ / "videos");

        const bool counting = !callgrindOut_.empty();
        const auto underCallgrind = [&](const std::string& out, std::vector<std::string> args) {
            if (counting)
                args.insert(args.begin(), {"valgrind", "--tool=callgrind", "--callgrind-out-file=" + out});
            return args;
        };
        std::vector<std::string> args;
        for (const std::string& a : {program_, file, (root_ / "videos").string(),
                                     (root_ / ("stream" + std::to_string(id) + ".txt")).string()})
            args.push_back(a);
        const pid_t stream = spawn(underCallgrind(callgrindOut_.string(), args), root_ / "stream_output.txt");
        const pid_t reference = spawn(underCallgrind(callgrindOut_.string() + ".ref",
                                                     {"ffmpeg", "-nostdin", "-v", "error", "-re", "-stream_loop", "-1",
                                                      "-i", source().string(), "-f", "null", "-"}),
                                      root_ / "ffmpeg_output.txt");
        const int slow = counting ? 20 : 1;   // valgrind starts them slowly
        platform::WindowHandle window = 0;
        for (int i = 0; i < 400 * slow && stream && !window; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
            window = platform::findWindow("", camera.common.videoName);
        }
        if (stream && reference && window) {
            std::this_thread::sleep_for(std::chrono::seconds(counting ? 10 : 3));   // both opened and playing
            core::StreamTable table;
            table.setTileSide(320);
            std::int32_t given = id;
            table.addStream(camera.common, {}, {}, given, true);
            table.withDrawLock([&](std::vector<core::CameraRuntime>& r) { r[0].channel.window = window; });
            auto manager = platform::createWindowEndpoint("Vexlane", "cost bench manager");
            std::int64_t stored = 0;
            if (manager)
                manager->onCopyData = [&](const platform::CopyDataMessage& m) {
                    return supervision::onCopyData(table, m, [&] { return ++stored; });
                };
            if (counting) {
                run({"callgrind_control", "-z", std::to_string(stream)}, 60000);
                run({"callgrind_control", "-z", std::to_string(reference)}, 60000);
            }
            const long long streamBefore = cpuTicks(stream), referenceBefore = cpuTicks(reference);
            const auto start = Clock::now();
            const auto until = start + std::chrono::seconds(seconds_);
            auto nextStill = start;
            std::vector<std::future<void>> requests;
            while (Clock::now() < until) {
                if (mode == Mode::Stills && manager && Clock::now() >= nextStill) {
                    nextStill += std::chrono::seconds(1);
                    ++figure.asked;
                    const core::StreamChannel channel = table.record(0).channel;
                    const platform::WindowHandle host = manager->handle();
                    requests.push_back(std::async(std::launch::async, [channel, host] {
                        supervision::requestImage(channel, host, 320, 320);
                    }));
                }
                if (manager)
                    manager->dispatchOne(20);
                else
                    std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
            const long long streamAfter = cpuTicks(stream), referenceAfter = cpuTicks(reference);
            if (counting) {
                run({"callgrind_control", "-d", std::to_string(stream)}, 60000);
                run({"callgrind_control", "-d", std::to_string(reference)}, 60000);
            }
            figure.seconds = std::chrono::duration<double>(Clock::now() - start).count();
            for (auto& r : requests)
                r.wait();
            figure.stills = static_cast<int>(stored);
            const double tick = static_cast<double>(::sysconf(_SC_CLK_TCK));
            if (streamBefore >= 0 && streamAfter >= 0)
                figure.stream = static_cast<double>(streamAfter - streamBefore) / tick / figure.seconds;
            if (referenceBefore >= 0 && referenceAfter >= 0)
                figure.reference = static_cast<double>(referenceAfter - referenceBefore) / tick / figure.seconds;
        }
        if (window)
            supervision::sendText(window, "quit", 1000);
        if (stream && !waitExit(stream, 5000 * slow))
            end(stream);
        end(reference);
        return figure;
    }

private:
    fs::path source() const { return root_ / "source_720p10.mp4"; }

    // Runs a program to its end (at most `ms`); its exit status, -1 when it
    // couldn't be started or was ended for taking too long.
    int run(const std::vector<std::string>& args, int ms)
    {
        const pid_t pid = spawn(args, root_ / "ffmpeg_output.txt");
        if (!pid)
            return -1;
        int status = 0;
        if (!waitExit(pid, ms, &status)) {
            end(pid);
            return -1;
        }
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    fs::path root_;
    std::string program_;
    int seconds_;
    fs::path callgrindOut_;   // set: under callgrind
};

} // namespace

// (a) and (b) under callgrind, beside ffmpeg's decode under callgrind.
bool countAll(Bench& bench, const fs::path& root)
{
    const std::string callee = "avcodec_send_packet";
    bool met = true;
    const struct {
        const char* what;
        Mode mode;
        const char* name;
    } rows[] = {{"(a) stream alone, no stills, no recording", Mode::Plain, "plain.out"},
                {"(b) a 320x320 still every second", Mode::Stills, "stills.out"}};
    int index = 0;
    for (const auto& row : rows) {
        std::printf("%s: under callgrind...\n", row.what);
        std::fflush(stdout);
        bench.underCallgrind(root / row.name);
        const Figure f = bench.measure(row.mode, index++);
        const Instructions counted = countInstructions(root / (std::string(row.name) + ".1"), callee);
        const Instructions reference = countInstructions(root / (std::string(row.name) + ".ref.1"), callee);
        if (counted.calls <= 0 || reference.calls <= 0) {
            std::printf("%s: not measured\n", row.what);
            met = false;
            continue;
        }
        const double figure = counted.total / static_cast<double>(counted.calls);
        const double base = reference.total / static_cast<double>(reference.calls);
        std::printf("%s: %.2f M instructions per frame (%lld frames); reference ffmpeg decode %.2f M (%lld "
                    "frames); ratio %.2f (target <= 1.3)\n",
                    row.what, figure / 1e6, counted.calls, base / 1e6, reference.calls, figure / base);
        if (row.mode == Mode::Stills)
            std::printf("    stills asked %d, pictures stored by the manager %d\n", f.asked, f.stills);
        met = met && figure / base <= 1.3;
    }
    return met;
}

int main(int argc, char** argv)
{
    const bool callgrind = argc > 1 && std::string(argv[1]) == "--callgrind";
    if (callgrind) {
        --argc;
        ++argv;
    }
    const int seconds = std::clamp(argc > 1 ? std::atoi(argv[1]) : 20, 5, 600);
    const std::string program = argc > 2 ? argv[2] : std::string(VEXLANE_BIN_DIR) + "/vxVideoStream";
    const fs::path root = fs::temp_directory_path() / ("vx-stream-cost-" + std::to_string(::getpid()));
    fs::create_directories(root / "run");
    fs::permissions(root / "run", fs::perms::owner_all);
    ::setenv("XDG_RUNTIME_DIR", (root / "run").c_str(), 1);

    std::printf("load average (uptime) before: %s on %ld cores\n", loadAverage().c_str(), ::sysconf(_SC_NPROCESSORS_ONLN));
    Bench bench(root, program, seconds);
    std::printf("making the source: 1280x720, 10 fps, H.264, 40 s...\n");
    std::fflush(stdout);
    if (!bench.makeSource()) {
        std::fprintf(stderr, "the source can't be made: is the ffmpeg program installed?\n%s",
                     readText(root / "ffmpeg_output.txt").c_str());
        std::error_code ec;
        fs::remove_all(root, ec);
        return 2;
    }
    if (callgrind) {
        const bool met = countAll(bench, root);
        std::printf("load average (uptime) after: %s\n", loadAverage().c_str());
        std::error_code ec;
        fs::remove_all(root, ec);
        return met ? 0 : 1;
    }
    struct Row {
        const char* what;
        Mode mode;
        const char* target;
        double limit;
    };
    const Row rows[] = {{"(a) stream alone, no stills, no recording", Mode::Plain, "<= 1.3", 1.3},
                        {"(b) a 320x320 still every second", Mode::Stills, "<= 1.3", 1.3},
                        {"(c) recording on (VP8, 1280x720)", Mode::Recording, "-", 0}};
    bool met = true;
    int index = 0;
    for (const Row& row : rows) {
        std::printf("%s: measuring %d s...\n", row.what, seconds);
        std::fflush(stdout);
        const Figure f = bench.measure(row.mode, index++);
        if (f.stream < 0 || f.reference <= 0) {
            std::printf("%s: not measured (the stream or ffmpeg didn't run)\n", row.what);
            met = false;
            continue;
        }
        const double ratio = f.stream / f.reference;
        std::printf("%s: %.1f ms CPU per second (%.1f%% of one core) over %.1f s; reference ffmpeg decode "
                    "%.1f ms per second; ratio %.2f (target %s)\n",
                    row.what, 1000 * f.stream, 100 * f.stream, f.seconds, 1000 * f.reference, ratio, row.target);
        if (row.mode == Mode::Stills)
            std::printf("    stills asked %d, pictures stored by the manager %d\n", f.asked, f.stills);
        if (row.limit > 0 && ratio > row.limit)
            met = false;
        if (row.mode == Mode::Stills && f.stills < f.asked - 1)
            met = false;
    }
    std::printf("load average (uptime) after: %s\n", loadAverage().c_str());
    std::error_code ec;
    fs::remove_all(root, ec);
    return met ? 0 : 1;
}
