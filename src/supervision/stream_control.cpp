#include "supervision/stream_control.h"

#include <cerrno>
#include <chrono>
#include <iostream>
#include <map>
#include <thread>

#include "config/text_codec.h"
#include "core/state/app_state.h"
#include "maintenance/system_log.h"
#include "platform/command_line.h"
#include "platform/paths.h"
#include "platform/process_command_line.h"
#include "supervision/stream_channel.h"
#include "supervision/stream_commands.h"

namespace vx::supervision {
namespace {

using maintenance::logError;
using maintenance::logInfo;
using maintenance::logTrace;
using maintenance::logWarning;

void pause(const StreamControl& control, int ms)
{
    if (control.sleep)
        control.sleep(ms);
    else
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

// UTF-8 to code points; a broken sequence gives its bytes one by one.
std::u32string decodeUtf8(const std::string& text)
{
    std::u32string out;
    for (std::size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        int extra = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : c >= 0xC0 ? 1 : 0;
        if (c >= 0x80 && c < 0xC0)
            extra = -1;
        char32_t value = extra == 3 ? c & 0x07 : extra == 2 ? c & 0x0F : extra == 1 ? c & 0x1F : c;
        bool good = extra >= 1 && i + static_cast<std::size_t>(extra) < text.size();
        for (int k = 1; good && k <= extra; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0) != 0x80)
                good = false;
            value = (value << 6) | (next & 0x3F);
        }
        if (!good || extra <= 0) {
            out.push_back(c);
            ++i;
        } else {
            out.push_back(value);
            i += static_cast<std::size_t>(extra) + 1;
        }
    }
    return out;
}

std::string encodeUtf8(const std::u32string& text)
{
    std::string out;
    for (char32_t c : text) {
        if (c < 0x80) {
            out.push_back(static_cast<char>(c));
        } else if (c < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (c >> 6)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else if (c < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | (c >> 12)));
            out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | (c >> 18)));
            out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        }
    }
    return out;
}

// The blanks the first platform's iswspace knows.
bool isWideBlank(char32_t c)
{
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F ||
           c == 0x3000;
}

char32_t lowerLetter(char32_t c)
{
    if (c >= U'A' && c <= U'Z')
        return c + 0x20;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7)
        return c + 0x20;
    if (c >= 0x410 && c <= 0x42F)
        return c + 0x20;
    if (c >= 0x400 && c <= 0x40F)
        return c + 0x50;
    return c;
}

std::vector<std::int32_t> streamIdList(const core::StreamTable& table)
{
    return table.collectIds();
}

} // namespace

std::string streamImageName()
{
    return std::string("vxVideoStream") + platform::executableSuffix;
}

std::string streamCommandLine(const std::string& configDirectory, const std::string& entry,
                              const std::string& videoPath, const std::string& systemLogPath, std::int32_t id)
{
    return streamImageName() + " \"" + configDirectory + "/" + entry + "\" \"" + videoPath + "\" \"" +
           systemLogPath + platform::pathSeparator + "vxVideoStreamLog" + std::to_string(id) + ".txt\"";
}

void videoStart(StreamControl& control, std::int32_t index, std::int32_t id)
{
    const StreamSettings settings = control.settings();
    const std::vector<std::string>& entries = settings.mainConfig.videoStreams;
    const std::vector<std::int32_t> ids = control.table ? streamIdList(*control.table) : std::vector<std::int32_t>{};
    const auto entryCount = static_cast<std::int64_t>(entries.size());
    if (id == -1 && !(index >= 0 && index < entryCount)) {
        VX_LOG(logError, "videoStart index " + std::to_string(index) + " error!");
        return;
    }
    if (id != -1) {
        for (std::size_t i = 0; i < ids.size(); ++i) {
            if (ids[i] == id) {
                index = static_cast<std::int32_t>(i);
                break;
            }
        }
        // An ID that isn't found leaves the index as it came: videoStart(0, 7)
        // with no stream 7 starts position 0 under ID 7, as it always has.
        if (!(index >= 0 && index < entryCount)) {
            VX_LOG(logError, "videoStart index " + std::to_string(index) + " error!");
            return;
        }
    }
    if (id == -1 && static_cast<std::size_t>(index) < ids.size())
        id = ids[static_cast<std::size_t>(index)];

    platform::ProcessStartInfo info;
    info.commandLine = config::cp1251ToUtf8(streamCommandLine(settings.configDirectory, entries[index],
                                                              settings.mainConfig.videoPath,
                                                              settings.mainConfig.systemLogPath, id));
    info.workingDirectory = settings.baseDirectory;
    info.searchFolder = settings.baseDirectory;
    // A process that can't be made leaves only the trace line below.
    if (std::unique_ptr<platform::StartedProcess> process = control.start ? control.start(info) : nullptr) {
        if (process->waitForExit(control.startWatchMs)) {
            const int code = process->exitCode();
            const std::string who = streamImageName() + " ID=" + std::to_string(id) + " ";
            if (code != 0)
                VX_LOG(logError, who +
                                     config::utf8ToCp1251(
                                         " - процесс завершился спустя менее 5 секунд после старта с ошибкой: ") +
                                     std::to_string(code));
            else
                VX_LOG(logError,
                       who + config::utf8ToCp1251(" - процесс завершился спустя менее 5 секунд после старта"));
        }
    }
    VX_LOG(logTrace, "videoStart ID" + std::to_string(id) + " ok!");
}

void videoStop(StreamControl& control, std::int32_t index)
{
    core::StreamTable* table = control.table;
    const platform::WindowHandle window =
        table && table->validIndex(index) ? table->record(index).channel.window : 0;
    if (window == 0) {
        VX_LOG(logWarning, "videoStop index " + std::to_string(index) + " not found!");
        return;
    }
    const int timeoutMs = table->record(index).channel.timeoutMs;
    const CommandNotParams quit("", "quit");
    if (control.sendText)
        control.sendText(window, quit.text(), timeoutMs);
    else
        sendText(window, quit.text(), timeoutMs);
    pause(control, control.stopWaitMs);
    const long owner = control.windowOwner ? control.windowOwner(window) : 0;
    if (owner != 0) {
        if (!(control.terminate && control.terminate(owner)))
            std::cerr << "videoStop error " << errno << std::endl;
        // The table may have shrunk during the wait.
        table->withDrawLock([&](std::vector<core::CameraRuntime>& records) {
            std::lock_guard<std::mutex> lock(table->streamTableLock());
            if (index >= 0 && static_cast<std::size_t>(index) < records.size())
                records[static_cast<std::size_t>(index)].hasImage = false;
        });
    }
    VX_LOG(logInfo, "videoStop index " + std::to_string(index) + " made!");
}

void videoRestart(StreamControl& control, std::int32_t index)
{
    videoStop(control, index);
    videoStart(control, index, -1);
}

std::string normalizeArg(const std::string& text)
{
    std::u32string s = decodeUtf8(text);
    while (s.size() >= 2 && s.front() == U'"' && s.back() == U'"')
        s = s.substr(1, s.size() - 2);
    while (!s.empty() && isWideBlank(s.back()))
        s.pop_back();
    std::size_t front = 0;
    while (front < s.size() && isWideBlank(s[front]))
        ++front;
    s.erase(0, front);
    for (char32_t& c : s)
        if (c == U'/')
            c = U'\\';
    return encodeUtf8(s);
}

bool sameTextIgnoringCase(const std::string& a, const std::string& b)
{
    const std::u32string x = decodeUtf8(a);
    const std::u32string y = decodeUtf8(b);
    if (x.size() != y.size())
        return false;
    for (std::size_t i = 0; i < x.size(); ++i)
        if (lowerLetter(x[i]) != lowerLetter(y[i]))
            return false;
    return true;
}

namespace {

// One pass's view of the processes: the list, and the command lines read
// from it so far. A pass over the autorun streams asks it once per stream;
// the list and the lines are read once for all of them, and again after a
// start, so that no stream is judged on a list older than the last start.
struct ProcessScan {
    std::vector<platform::ProcessEntry> processes;
    std::map<long, std::string> commandLines;
    bool taken = false;
};

const std::vector<platform::ProcessEntry>& processesOf(StreamControl& control, ProcessScan& scan)
{
    if (!scan.taken) {
        scan.processes = control.listProcesses();
        scan.commandLines.clear();
        scan.taken = true;
    }
    return scan.processes;
}

const std::string& commandLineOf(StreamControl& control, ProcessScan& scan, long pid)
{
    auto it = scan.commandLines.find(pid);
    if (it == scan.commandLines.end())
        it = scan.commandLines
                 .emplace(pid, control.readCommandLine ? control.readCommandLine(pid)
                                                       : platform::readProcessCommandLine(pid))
                 .first;
    return it->second;
}

long findProcessIn(StreamControl& control, ProcessScan& scan, const std::string& exeName,
                   const std::string& firstArg)
{
    const std::vector<platform::ProcessEntry>& processes = processesOf(control, scan);
    if (processes.empty())
        return 0;
    // The diagnostic texts of a scan are built and kept to the scan: a scan
    // runs for every autorun stream at each check, too often for the log.
    std::string diagnostic = "Searching for process: '" + exeName + "' with firstArg: '" + firstArg + "'";
    const std::string wanted = normalizeArg(firstArg);
    for (const platform::ProcessEntry& process : processes) {
        if (process.imageName != exeName)
            continue;
        const std::string& line = commandLineOf(control, scan, process.pid);
        diagnostic = "Full cmdline: '" + line + "'";
        const std::vector<std::string> arguments = platform::splitCommandLine(line);
        if (arguments.size() < 2)
            continue;
        const bool match = sameTextIgnoringCase(normalizeArg(arguments[1]), wanted);
        diagnostic = "Found vxVideoStream.exe, arg='" + arguments[1] + "', expected='" + firstArg +
                     "', match=" + (match ? "true" : "false");
        if (match)
            return process.pid;
    }
    (void)diagnostic;
    return 0;
}

} // namespace

long findProcessByArg(StreamControl& control, const std::string& exeName, const std::string& firstArg)
{
    if (!control.listProcesses)
        return 0;
    ProcessScan scan;
    return findProcessIn(control, scan, exeName, firstArg);
}

std::uint32_t streamIdFromEntry(const std::string& entry)
{
    const std::size_t at = entry.find("stream");
    if (at == std::string::npos)
        return 0xFFFFFFFFu;
    std::uint32_t id = 0;
    for (std::size_t i = at + 6; i < entry.size() && entry[i] >= '0' && entry[i] <= '9'; ++i)
        id = id * 10 + static_cast<std::uint32_t>(entry[i] - '0');
    return id;
}

void restartMissingStreams(StreamControl& control)
{
    const StreamSettings settings = control.settings();
    const std::vector<std::string>& entries = settings.mainConfig.videoStreams;
    const std::vector<bool>& autoRun = settings.mainConfig.autoRunStreams;
    ProcessScan scan;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i >= autoRun.size() || !autoRun[i])
            continue;
        const std::string firstArg = config::cp1251ToUtf8(settings.configDirectory + "/" + entries[i]);
        if (control.listProcesses && findProcessIn(control, scan, streamImageName(), firstArg) != 0)
            continue;
        const std::uint32_t id = streamIdFromEntry(entries[i]);
        // Runs here, on the watch's thread, five seconds at most per stream.
        videoStart(control, 100000, static_cast<std::int32_t>(id));
        scan.taken = false;   // the next stream is judged on a list taken after this start
    }
}

std::shared_ptr<StreamControl> makeStreamControl(core::AppState& state)
{
    auto control = std::make_shared<StreamControl>();
    control->table = &state.streams;
    core::AppState* s = &state;
    control->settings = [s] {
        StreamSettings settings;
        settings.mainConfig = s->liveMainConfig;
        settings.configDirectory = s->ConfigDirectory;
        settings.baseDirectory = s->baseDirectory;
        return settings;
    };
    return control;
}

} // namespace vx::supervision
