#include "maintenance/video_archive.h"

#include <algorithm>
#include <functional>
#include <set>
#include <cstdio>
#include <system_error>
#include <utility>

#include "maintenance/local_time.h"

namespace vx::maintenance {

namespace fs = std::filesystem;

namespace {

const std::string webm = ".webm";

bool allDigits(const std::string& text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// A field as a decimal number; false for anything but digits. Longer runs
// than any valid field can hold fail as well, so nothing overflows.
bool parseField(const std::string& text, std::uint32_t& value)
{
    if (!allDigits(text) || text.size() > 9)
        return false;
    value = static_cast<std::uint32_t>(std::stoul(text));
    return true;
}

bool endsWith(const std::string& text, const std::string& tail)
{
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// Calls `visit` for each entry of `folder`; a folder that can't be read ends
// that branch without a word.
template <typename Visit>
void forEachEntry(const fs::path& folder, Visit visit)
{
    std::error_code ec;
    fs::directory_iterator it(folder, ec);
    if (ec)
        return;
    for (const fs::directory_iterator end; it != end; it.increment(ec)) {
        if (ec)
            return;
        visit(*it);
    }
}

// A folder of the tree itself: a link to a folder is not one.
bool isFolder(const fs::directory_entry& entry)
{
    std::error_code ec;
    return entry.symlink_status(ec).type() == fs::file_type::directory;
}

bool isFolder(const fs::path& path)
{
    std::error_code ec;
    return fs::symlink_status(path, ec).type() == fs::file_type::directory;
}

// A video file of the tree: a plain file (not a link) whose name parses.
bool isVideoFile(const fs::directory_entry& entry, const std::string& name, std::uint64_t& key)
{
    std::error_code ec;
    std::string streamFolder;
    return entry.symlink_status(ec).type() == fs::file_type::regular && endsWith(name, webm) &&
           parseVideoName(name, key, streamFolder);
}

bool folderIsEmpty(const fs::path& folder)
{
    std::error_code ec;
    fs::directory_iterator it(folder, ec);
    return !ec && it == fs::directory_iterator();
}

VideoArchiveHooks withDefaults(VideoArchiveHooks hooks)
{
    if (!hooks.now)
        hooks.now = [] { return std::time(nullptr); };
    if (!hooks.deleteFile)
        hooks.deleteFile = platform::deleteFileUnlessInUse;
    if (!hooks.removeFolder)
        hooks.removeFolder = [](const fs::path& path) {
            std::error_code ec;
            return fs::remove(path, ec) && !ec;
        };
    return hooks;
}

} // namespace

bool parseVideoName(const std::string& name, std::uint64_t& timeKeyOut, std::string& streamFolderOut)
{
    if (name.size() <= 29 || name.compare(0, 12, "video_stream") != 0 || name[12] != '_')
        return false;
    std::size_t start = 13;
    std::size_t stop = name.find('_', start);
    if (stop == std::string::npos)
        return false;
    const std::string id = name.substr(start, stop - start);
    if (!allDigits(id))
        return false;

    std::uint32_t fields[6] = {};
    for (int i = 0; i < 6; ++i) {
        start = stop + 1;
        if (i < 5) {
            stop = name.find('_', start);
        } else {
            // The last field ends at a "(" suffix, or else at the extension.
            stop = name.find('(', start);
            if (stop == std::string::npos)
                stop = name.find('.', start);
        }
        if (stop == std::string::npos || !parseField(name.substr(start, stop - start), fields[i]))
            return false;
    }
    const std::uint32_t year = fields[0], month = fields[1], day = fields[2], hour = fields[3],
                        minute = fields[4], second = fields[5];
    if (year < 2000 || year > 2100 || month < 1 || month > 12 || day < 1 || day > 31 || hour >= 24 ||
        minute >= 60 || second >= 60)
        return false;
    std::uint64_t key = 0;
    for (std::uint32_t field : fields)
        key = key * 100 + field;
    timeKeyOut = key;
    streamFolderOut = "stream" + id;
    return true;
}

VideoArchive::VideoArchive(fs::path root, std::uint32_t limitMb, VideoArchiveHooks hooks)
    : root_(std::move(root)), limitBytes_(static_cast<std::uint64_t>(limitMb) << 20),
      hooks_(withDefaults(std::move(hooks)))
{
    fullScan();
}

std::vector<std::string> VideoArchive::dayFolders(std::time_t now)
{
    const std::time_t day = 86400;
    const std::time_t midnight = now - now % day;
    std::vector<std::string> names;
    for (std::time_t t : {midnight - day, midnight, midnight + day}) {
        const std::tm local = localTimeOf(t);
        char text[32];
        std::snprintf(text, sizeof text, "%04d_%02d_%02d", local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
        names.emplace_back(text);
    }
    return names;
}

void VideoArchive::addFile(VideoStreamRecord& stream, const std::string& day, const fs::directory_entry& entry,
                           const std::string& name, std::uint64_t timeKey)
{
    VideoDayRecord& record = stream.days[day];
    if (record.names.contains(name))
        return;
    std::error_code ec;
    const std::uint64_t size = entry.file_size(ec);   // a plain file: no link to follow
    if (ec)
        return;   // gone between the listing and the look at its size
    record.files.push_back({entry.path(), timeKey, size});
    record.names.insert(name);
    record.bytes += size;
    stream.bytes += size;
    totalBytes_ += size;
}

void VideoArchive::fullScan()
{
    forEachEntry(root_, [&](const fs::directory_entry& streamFolder) {
        if (!isFolder(streamFolder))
            return;
        // Keyed by the folder, as the pass keys it, whatever ID the file
        // names carry.
        const std::string streamName = streamFolder.path().filename().string();
        forEachEntry(streamFolder.path(), [&](const fs::directory_entry& dayFolder) {
            if (!isFolder(dayFolder))
                return;
            const std::string day = dayFolder.path().filename().string();
            forEachEntry(dayFolder.path(), [&](const fs::directory_entry& file) {
                const std::string name = file.path().filename().string();
                std::uint64_t key = 0;
                if (isVideoFile(file, name, key))
                    addFile(streams_[streamName], day, file, name, key);
            });
        });
    });
}

void VideoArchive::enforceQuota()
{
    forEachEntry(root_, [&](const fs::directory_entry& entry) {
        const std::string name = entry.path().filename().string();
        if (isFolder(entry) && name.rfind("stream", 0) == 0)
            streams_.try_emplace(name);
    });
    const std::vector<std::string> days = dayFolders(hooks_.now());
    for (auto& streamEntry : streams_) {
        const std::string& streamName = streamEntry.first;
        auto& stream = streamEntry.second;   // a named reference: the lambda below takes it
        // The full scan indexes any folder; a pass reads "stream*" only, and
        // never through a link.
        if (streamName.rfind("stream", 0) != 0 || !isFolder(root_ / streamName))
            continue;
        for (const std::string& day : days) {
            if (!isFolder(root_ / streamName / day))
                continue;
            forEachEntry(root_ / streamName / day, [&](const fs::directory_entry& file) {
                const std::string name = file.path().filename().string();
                std::uint64_t key = 0;
                if (isVideoFile(file, name, key))
                    addFile(stream, day, file, name, key);
            });
        }
    }
    if (totalBytes_ <= limitBytes_)
        return;
    deleteOldest();
}

bool VideoArchive::deleteOldest()
{
    struct Candidate {
        const std::string* streamName;
        VideoStreamRecord* stream;
        VideoDayRecord* day;
        std::size_t index;
    };
    // The pair's second number is the candidate's place in the index walk:
    // stable among equal time keys.
    std::vector<std::pair<std::uint64_t, std::size_t>> order;
    std::vector<Candidate> candidates;
    for (auto& [streamName, stream] : streams_)
        for (auto& [dayName, day] : stream.days)
            for (std::size_t i = 0; i < day.files.size(); ++i) {
                order.emplace_back(day.files[i].timeKey, candidates.size());
                candidates.push_back({&streamName, &stream, &day, i});
            }
    // Ascending by time key, equal keys by the second number. A heap gives
    // the same order one at a time: a pass usually needs only a few.
    const auto later = std::greater<std::pair<std::uint64_t, std::size_t>>();
    std::make_heap(order.begin(), order.end(), later);

    std::vector<bool> deleted(candidates.size(), false);
    std::set<VideoDayRecord*> touchedDays;
    std::set<const std::string*> touchedStreams;
    while (!order.empty() && totalBytes_ > limitBytes_) {
        std::pop_heap(order.begin(), order.end(), later);
        const std::size_t number = order.back().second;
        order.pop_back();
        const Candidate& c = candidates[number];
        const VideoFileRecord& file = c.day->files[c.index];
        // A file the stream still writes refuses; it stays counted and
        // comes round again on a later pass. One removed by hand is missing:
        // it leaves the index and the totals as if deleted here, or it would
        // stay counted for ever and newer files would go in its place.
        if (hooks_.deleteFile(file.path) == platform::FileDeleteResult::refused)
            continue;
        totalBytes_ -= file.size;
        c.stream->bytes -= file.size;
        c.day->bytes -= file.size;
        deleted[number] = true;
        touchedDays.insert(c.day);
        touchedStreams.insert(c.streamName);
    }
    if (touchedDays.empty())
        return false;
    std::size_t number = 0;
    for (auto& [streamName, stream] : streams_)
        for (auto& [dayName, day] : stream.days) {
            if (!touchedDays.contains(&day)) {
                number += day.files.size();
                continue;
            }
            std::vector<VideoFileRecord> kept;
            kept.reserve(day.files.size());
            for (VideoFileRecord& file : day.files) {
                if (deleted[number++])
                    day.names.erase(file.path.filename().string());
                else
                    kept.push_back(std::move(file));
            }
            day.files = std::move(kept);
        }
    sweepEmptyDays(touchedStreams);
    return true;
}

void VideoArchive::sweepEmptyDays(const std::set<const std::string*>& streams)
{
    for (auto& [streamName, stream] : streams_) {
        if (!streams.contains(&streamName) || !isFolder(root_ / streamName))
            continue;
        std::vector<fs::path> empty;
        forEachEntry(root_ / streamName, [&](const fs::directory_entry& dayFolder) {
            if (isFolder(dayFolder) && folderIsEmpty(dayFolder.path()))
                empty.push_back(dayFolder.path());
        });
        for (const fs::path& folder : empty)
            if (hooks_.removeFolder(folder))
                stream.days.erase(folder.filename().string());
    }
}

} // namespace vx::maintenance
