#include "supervision/stream_control.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <iostream>
#include <map>
#include <optional>
#include <thread>

#include "config/camera_config.h"
#include "config/text_codec.h"
#include "state/app_state.h"
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

std::shared_ptr<std::mutex> StreamLocks::of(std::int32_t id)
{
    std::lock_guard<std::mutex> lock(mutex);
    std::shared_ptr<std::mutex>& m = byId[id];
    if (!m)
        m = std::make_shared<std::mutex>();
    return m;
}

namespace {

// The entry of videoStreams that names the stream with this ID.
const std::string* entryOf(const std::vector<std::string>& entries, std::int32_t id)
{
    for (const std::string& entry : entries)
        if (static_cast<std::int32_t>(streamIdFromEntry(entry)) == id)
            return &entry;
    return nullptr;
}

// A stream's first argument, as its command line carries it (UTF-8).
std::string firstArgOf(const StreamSettings& settings, const std::string& entry)
{
    return config::cp1251ToUtf8(settings.configDirectory + "/" + entry);
}

bool inTable(const std::vector<std::int32_t>& ids, std::int32_t id)
{
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

std::mutex& lockOf(StreamControl& control, std::int32_t id, std::shared_ptr<std::mutex>& keep)
{
    if (!control.locks)
        control.locks = std::make_shared<StreamLocks>();
    keep = control.locks->of(id);
    return *keep;
}

struct ProcessScan {
    std::vector<platform::ProcessEntry> processes;
    std::map<long, std::string> commandLines;
    // Per process of the list: its first argument as matchKey gives it, or
    // nothing when its command line has none. A pass asks for every autorun
    // stream; each process's line is split and folded once.
    std::map<long, std::optional<std::u32string>> firstArgKeys;
    bool taken = false;
};

std::vector<long> findProcessesIn(StreamControl& control, ProcessScan& scan, const std::string& exeName,
                                  const std::string& firstArg, bool firstOnly);

// Starts the stream; the caller holds the stream's lock. With `checkRunning`
// a stream whose process runs already is left as it is.
void startStream(StreamControl& control, std::int32_t index, std::int32_t id, const StreamSettings& settings,
                 const std::vector<std::int32_t>& ids, bool checkRunning)
{
    const std::vector<std::string>& entries = settings.mainConfig.videoStreams;
    // The stream's own entry when the list names it; the list may hold
    // streams whose file didn't load, so positions can differ from the table's.
    const std::string* entry = inTable(ids, id) ? entryOf(entries, id) : nullptr;
    if (!entry)
        entry = &entries[static_cast<std::size_t>(index)];
    if (checkRunning && control.listProcesses) {
        ProcessScan scan;
        if (!findProcessesIn(control, scan, streamImageName(), firstArgOf(settings, *entry), true).empty()) {
            VX_LOG(logTrace, "videoStart ID" + std::to_string(id) + " already running!");
            return;
        }
    }
    platform::ProcessStartInfo info;
    info.commandLine = config::cp1251ToUtf8(streamCommandLine(settings.configDirectory, *entry,
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

// Resolves the stream a start means; false (logged) when there is none.
bool resolveStart(const StreamSettings& settings, const std::vector<std::int32_t>& ids, std::int32_t& index,
                  std::int32_t& id)
{
    const auto entryCount = static_cast<std::int64_t>(settings.mainConfig.videoStreams.size());
    if (id == -1 && !(index >= 0 && index < entryCount)) {
        VX_LOG(logError, "videoStart index " + std::to_string(index) + " error!");
        return false;
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
            return false;
        }
    }
    if (id == -1 && static_cast<std::size_t>(index) < ids.size())
        id = ids[static_cast<std::size_t>(index)];
    return true;
}

void startLocked(StreamControl& control, std::int32_t index, std::int32_t id)
{
    const StreamSettings settings = control.settings();
    const std::vector<std::int32_t> ids = control.table ? control.table->tableIds() : std::vector<std::int32_t>{};
    if (!resolveStart(settings, ids, index, id))
        return;
    startStream(control, index, id, settings, ids, true);
}

void stopLocked(StreamControl& control, std::int32_t index)
{
    core::StreamTable* table = control.table;
    const bool known = table && table->validIndex(index);
    const core::CameraRuntime record = known ? table->record(index) : core::CameraRuntime{};
    const platform::WindowHandle window = record.channel.window;
    // Every process started for this stream, whatever became of its window.
    const StreamSettings settings = control.settings();
    const std::string* listed = entryOf(settings.mainConfig.videoStreams, record.id);
    const std::string firstArg = firstArgOf(settings, listed ? *listed : config::cameraFileName(record.id));
    auto processes = [&] {
        ProcessScan scan;
        return known && control.listProcesses ? findProcessesIn(control, scan, streamImageName(), firstArg, false)
                                              : std::vector<long>{};
    };
    std::vector<long> found = window == 0 ? processes() : std::vector<long>{};
    if (window == 0 && found.empty()) {
        VX_LOG(logWarning, "videoStop index " + std::to_string(index) + " not found!");
        return;
    }
    bool ended = false;
    if (window != 0) {
        const CommandNotParams quit("", "quit");
        if (control.sendText)
            control.sendText(window, quit.text(), record.channel.timeoutMs);
        else
            sendText(window, quit.text(), record.channel.timeoutMs);
        pause(control, control.stopWaitMs);
        const long owner = control.windowOwner ? control.windowOwner(window) : 0;
        if (owner != 0) {
            if (!(control.terminate && control.terminate(owner)))
                std::cerr << "videoStop error " << errno << std::endl;
            ended = true;
        }
        found = processes();
    }
    // Processes the window didn't lead to: a second copy, or one whose
    // window the table hasn't found yet.
    for (int waited = 0; !found.empty(); waited += 50) {
        for (long pid : found)
            if (control.terminate)
                control.terminate(pid);
        ended = true;
        if (waited >= control.stopGoneMs)
            break;
        pause(control, 50);
        found = processes();
    }
    if (ended) {
        // The table may have shrunk during the wait.
        table->withDrawLock([&](std::vector<core::CameraRuntime>& records) {
            std::lock_guard<std::mutex> lock(table->streamTableLock());
            if (index >= 0 && static_cast<std::size_t>(index) < records.size())
                records[static_cast<std::size_t>(index)].hasImage = false;
        });
    }
    VX_LOG(logInfo, "videoStop index " + std::to_string(index) + " made!");
}

// The ID a start by position or by ID will work on, for its lock.
std::int32_t startKey(StreamControl& control, std::int32_t index, std::int32_t id)
{
    if (id != -1)
        return id;
    return control.table ? control.table->record(index).id : -1;
}

} // namespace

void videoStart(StreamControl& control, std::int32_t index, std::int32_t id)
{
    std::shared_ptr<std::mutex> keep;
    std::lock_guard<std::mutex> lock(lockOf(control, startKey(control, index, id), keep));
    startLocked(control, index, id);
}

void videoStop(StreamControl& control, std::int32_t index)
{
    std::shared_ptr<std::mutex> keep;
    std::lock_guard<std::mutex> lock(lockOf(control, startKey(control, index, -1), keep));
    stopLocked(control, index);
}

void videoRestart(StreamControl& control, std::int32_t index)
{
    std::shared_ptr<std::mutex> keep;
    std::lock_guard<std::mutex> lock(lockOf(control, startKey(control, index, -1), keep));
    stopLocked(control, index);
    startLocked(control, index, -1);
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

namespace {

// The text as sameTextIgnoringCase compares it: its letters lowered, one by one.
std::u32string foldedText(const std::string& text)
{
    std::u32string folded = decodeUtf8(text);
    for (char32_t& c : folded)
        c = lowerLetter(c);
    return folded;
}

} // namespace

bool sameTextIgnoringCase(const std::string& a, const std::string& b)
{
    return foldedText(a) == foldedText(b);
}

namespace {

// One pass's view of the processes (ProcessScan): the list, and the command
// lines read from it so far. A pass over the autorun streams asks it once
// per stream; the list and the lines are read once for all of them, and
// again after a start, so that no stream is judged on a list older than the
// last start.
const std::vector<platform::ProcessEntry>& processesOf(StreamControl& control, ProcessScan& scan)
{
    if (!scan.taken) {
        scan.processes = control.listProcesses();
        scan.commandLines.clear();
        scan.firstArgKeys.clear();
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

// A first argument as the search compares it: normalised, then folded.
std::u32string matchKey(const std::string& text)
{
    return foldedText(normalizeArg(text));
}

const std::optional<std::u32string>& firstArgKeyOf(StreamControl& control, ProcessScan& scan, long pid)
{
    auto it = scan.firstArgKeys.find(pid);
    if (it == scan.firstArgKeys.end()) {
        const std::vector<std::string> arguments = platform::splitCommandLine(commandLineOf(control, scan, pid));
        std::optional<std::u32string> key;
        if (arguments.size() >= 2)
            key = matchKey(arguments[1]);
        it = scan.firstArgKeys.emplace(pid, std::move(key)).first;
    }
    return it->second;
}

std::vector<long> findProcessesIn(StreamControl& control, ProcessScan& scan, const std::string& exeName,
                                  const std::string& firstArg, bool firstOnly)
{
    std::vector<long> found;
    const std::vector<platform::ProcessEntry>& processes = processesOf(control, scan);
    if (processes.empty())
        return found;
    const std::u32string wanted = matchKey(firstArg);
    for (const platform::ProcessEntry& process : processes) {
        if (process.imageName != exeName)
            continue;
        const std::optional<std::u32string>& key = firstArgKeyOf(control, scan, process.pid);
        if (key && *key == wanted) {
            found.push_back(process.pid);
            if (firstOnly)
                break;
        }
    }
    return found;
}

} // namespace

long findProcessByArg(StreamControl& control, const std::string& exeName, const std::string& firstArg)
{
    if (!control.listProcesses)
        return 0;
    ProcessScan scan;
    const std::vector<long> found = findProcessesIn(control, scan, exeName, firstArg, true);
    return found.empty() ? 0 : found.front();
}

std::vector<long> findProcessesByArg(StreamControl& control, const std::string& exeName, const std::string& firstArg)
{
    if (!control.listProcesses)
        return {};
    ProcessScan scan;
    return findProcessesIn(control, scan, exeName, firstArg, false);
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
    const std::vector<std::int32_t> ids = control.table ? control.table->tableIds() : std::vector<std::int32_t>{};
    ProcessScan scan;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i >= autoRun.size() || !autoRun[i])
            continue;
        const auto id = static_cast<std::int32_t>(streamIdFromEntry(entries[i]));
        // No stream behind the entry (its file didn't load): nothing to start,
        // and nothing to log on every tick.
        if (!inTable(ids, id))
            continue;
        const std::string firstArg = firstArgOf(settings, entries[i]);
        auto missing = [&] {
            return !control.listProcesses || findProcessesIn(control, scan, streamImageName(), firstArg, true).empty();
        };
        if (!missing())
            continue;
        // A start, stop or restart of this stream is under way: it decides.
        std::shared_ptr<std::mutex> keep;
        std::unique_lock<std::mutex> lock(lockOf(control, id, keep), std::try_to_lock);
        if (!lock.owns_lock())
            continue;
        // The list may predate a start that ended just before the lock.
        scan.taken = false;
        if (!missing())
            continue;
        // Runs here, on the watch's thread, five seconds at most per stream.
        std::int32_t index = 100000;
        std::int32_t startId = id;
        if (resolveStart(settings, ids, index, startId))
            startStream(control, index, startId, settings, ids, false);
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
