#include "maintenance/video_archive.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <set>
#include <string_view>
#include <tuple>
#include <system_error>
#include <thread>
#include <utility>

#include "maintenance/local_time.h"
#include "platform/folder_reader.h"

namespace vx::maintenance {

namespace fs = std::filesystem;

namespace {

const std::string webm = ".webm";

bool allDigits(std::string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// A field as a decimal number; false for anything but digits. Longer runs
// than any valid field can hold fail as well, so nothing overflows.
bool parseField(std::string_view text, std::uint32_t& value)
{
    if (!allDigits(text) || text.size() > 9)
        return false;
    std::uint32_t v = 0;
    for (char c : text)
        v = v * 10 + static_cast<std::uint32_t>(c - '0');
    value = v;
    return true;
}

bool endsWith(const std::string& text, const std::string& tail)
{
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// Calls `visit(entry, reader)` for each entry of `folder`; a folder that
// can't be read ends that branch without a word.
template <typename Visit>
void forEachEntry(const fs::path& folder, Visit visit)
{
    platform::FolderReader reader(folder);
    platform::FolderEntry entry;
    while (reader.next(entry))
        visit(entry, reader);
}

// A folder of the tree itself: a link to a folder is not one.
bool isFolder(const fs::path& path)
{
    std::error_code ec;
    return fs::symlink_status(path, ec).type() == fs::file_type::directory;
}

// A video file of the tree: a plain file (not a link) whose name parses.
bool isVideoFile(const platform::FolderEntry& entry, std::uint64_t& key)
{
    std::string streamFolder;
    return entry.kind == platform::EntryKind::file && endsWith(entry.name, webm) &&
           parseVideoName(entry.name, key, streamFolder);
}

// A file's name as the index keeps it: the listing's UTF-8.
std::string nameOf(const fs::path& path)
{
    const std::u8string text = path.filename().u8string();
    return std::string(text.begin(), text.end());
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
    const std::string_view text(name);
    if (text.size() <= 29 || text.compare(0, 12, "video_stream") != 0 || text[12] != '_')
        return false;
    std::size_t start = 13;
    std::size_t stop = text.find('_', start);
    if (stop == std::string_view::npos)
        return false;
    const std::string_view id = text.substr(start, stop - start);
    if (!allDigits(id))
        return false;

    std::uint32_t fields[6] = {};
    for (int i = 0; i < 6; ++i) {
        start = stop + 1;
        if (i < 5) {
            stop = text.find('_', start);
        } else {
            // The last field ends at a "(" suffix, or else at the extension.
            stop = text.find('(', start);
            if (stop == std::string_view::npos)
                stop = text.find('.', start);
        }
        if (stop == std::string_view::npos || !parseField(text.substr(start, stop - start), fields[i]))
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
    streamFolderOut.assign("stream").append(id);
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

namespace {

// Adds a parsed file at the end of a stream's day unless it is there
// already; the bytes added (0 for none).
std::uint64_t addToDay(VideoStreamRecord& stream, VideoDayRecord& record, platform::FolderReader& reader,
                       const platform::FolderEntry& entry, std::uint64_t timeKey, bool& added)
{
    added = false;
    if (record.namesMade && record.names.contains(entry.name))
        return 0;
    std::uint64_t size = 0;
    if (!reader.sizeOfLast(size))
        return 0;   // gone between the listing and the look at its size
    record.files.push_back({reader.pathOf(entry), timeKey, size});
    if (record.namesMade)
        record.names.insert(entry.name);
    record.bytes += size;
    stream.bytes += size;
    added = true;
    return size;
}

} // namespace

bool VideoArchive::addFile(VideoStreamRecord& stream, VideoDayRecord& record, platform::FolderReader& reader,
                           const platform::FolderEntry& entry, std::uint64_t timeKey)
{
    bool added = false;
    totalBytes_ += addToDay(stream, record, reader, entry, timeKey, added);
    return added;
}

namespace {

// A day's files by time key, equal keys in the order they came: the pass
// takes each day's files from the front.
void orderByTime(VideoDayRecord& day)
{
    std::stable_sort(day.files.begin(), day.files.end(),
                     [](const VideoFileRecord& a, const VideoFileRecord& b) { return a.timeKey < b.timeKey; });
}

// The folder's last change (entries added, removed or renamed), false when
// it can't be read.
bool folderTime(const fs::path& folder, fs::file_time_type& time)
{
    std::error_code ec;
    time = fs::last_write_time(folder, ec);
    return !ec;
}

// Whether a listing made after seeing `time` saw everything up to `time`
// for good: a change within the same tick of the clock as the listing would
// leave the folder's time as it was, so a time this recent is not trusted.
bool settled(fs::file_time_type time)
{
    return fs::file_time_type::clock::now() - time > std::chrono::seconds(2);
}

} // namespace

namespace {

// One stream folder's day folders and files into a record of its own.
// False when it holds no video file (it then gets no record).
bool scanStream(const fs::path& folder, VideoStreamRecord& stream)
{
    forEachEntry(folder, [&](const platform::FolderEntry& dayEntry, const platform::FolderReader& days) {
        if (dayEntry.kind != platform::EntryKind::folder)
            return;
        const fs::path dayFolder = days.pathOf(dayEntry);
        const std::string day = dayFolder.filename().string();
        fs::file_time_type before{};
        const bool timed = folderTime(dayFolder, before);
        VideoDayRecord* record = nullptr;
        forEachEntry(dayFolder, [&](const platform::FolderEntry& file, platform::FolderReader& files) {
            std::uint64_t key = 0;
            if (!isVideoFile(file, key))
                return;
            if (!record) {
                record = &stream.days[day];
                record->namesMade = false;
            }
            bool added = false;
            addToDay(stream, *record, files, file, key, added);
        });
        if (record) {
            orderByTime(*record);
            record->listedTime = before;
            record->listedForGood = timed && settled(before);
        }
    });
    return !stream.days.empty();
}

} // namespace

void VideoArchive::fullScan()
{
    std::vector<fs::path> folders;
    forEachEntry(root_, [&](const platform::FolderEntry& entry, const platform::FolderReader& reader) {
        if (entry.kind == platform::EntryKind::folder)
            folders.push_back(reader.pathOf(entry));
    });
    // The stream folders are read side by side (most of the time goes into
    // asking the system for each file's size), each into a record of its
    // own; the records join the index afterwards. Keyed by the folder, as
    // the pass keys it, whatever ID the file names carry.
    std::vector<VideoStreamRecord> records(folders.size());
    std::vector<char> found(folders.size(), 0);
    std::atomic<std::size_t> next{0};
    const auto work = [&] {
        for (std::size_t i = next++; i < folders.size(); i = next++)
            found[i] = scanStream(folders[i], records[i]);
    };
    const unsigned helpers = std::min(std::max(std::thread::hardware_concurrency(), 1u), 4u) - 1;
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < helpers && i + 1 < folders.size(); ++i)
        threads.emplace_back(work);
    work();
    for (std::thread& thread : threads)
        thread.join();
    for (std::size_t i = 0; i < folders.size(); ++i)
        if (found[i]) {
            totalBytes_ += records[i].bytes;
            streams_[folders[i].filename().string()] = std::move(records[i]);
        }
}

void VideoArchive::enforceQuota()
{
    forEachEntry(root_, [&](const platform::FolderEntry& entry, const platform::FolderReader& reader) {
        if (entry.kind == platform::EntryKind::folder && entry.name.rfind("stream", 0) == 0)
            streams_.try_emplace(reader.pathOf(entry).filename().string());
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
            const fs::path folder = root_ / streamName / day;
            const auto known = stream.days.find(day);
            // A folder unchanged since a listing that saw it for good holds
            // nothing new: no entry was added, removed or renamed since.
            fs::file_time_type before{};
            const bool timed = folderTime(folder, before);
            if (timed && known != stream.days.end() && known->second.listedForGood &&
                known->second.listedTime == before)
                continue;
            VideoDayRecord* record = known != stream.days.end() ? &known->second : nullptr;
            if (record && !record->namesMade) {
                for (const VideoFileRecord& f : record->files)
                    record->names.insert(nameOf(f.path));
                record->namesMade = true;
            }
            bool added = false;
            forEachEntry(folder, [&](const platform::FolderEntry& file, platform::FolderReader& files) {
                // Most names of these days are indexed already: a look-up is all they cost.
                if (record && record->names.contains(file.name))
                    return;
                std::uint64_t key = 0;
                if (!isVideoFile(file, key))
                    return;
                if (!record)
                    record = &stream.days[day];
                added = addFile(stream, *record, files, file, key) || added;
            });
            if (record) {
                if (added)
                    orderByTime(*record);
                record->listedTime = before;
                record->listedForGood = timed && settled(before);
            }
        }
    }
    if (totalBytes_ <= limitBytes_)
        return;
    deleteOldest();
}

bool VideoArchive::deleteOldest()
{
    // The candidates are ordered by time key, and equal keys by their place
    // in the index walk (stream, day, place in the day). Each day's files
    // are in that order already, so the oldest across all is the least of
    // the days' first files: a heap of one entry per day gives the order
    // one file at a time, and a pass usually needs only a few.
    struct Day {
        const std::string* streamName;
        VideoStreamRecord* stream;
        VideoDayRecord* record;
        std::vector<bool> deleted;
    };
    struct Head {
        std::uint64_t timeKey;
        std::size_t day;     // place of the day in the walk
        std::size_t index;   // place of the file in its day
        bool operator>(const Head& o) const
        {
            return std::tie(timeKey, day, index) > std::tie(o.timeKey, o.day, o.index);
        }
    };
    std::vector<Day> days;
    std::vector<Head> heads;
    for (auto& [streamName, stream] : streams_)
        for (auto& [dayName, day] : stream.days) {
            if (!day.files.empty())
                heads.push_back({day.files.front().timeKey, days.size(), 0});
            days.push_back({&streamName, &stream, &day, {}});
        }
    const auto later = std::greater<Head>();
    std::make_heap(heads.begin(), heads.end(), later);

    std::set<const std::string*> touchedStreams;
    bool any = false;
    while (!heads.empty() && totalBytes_ > limitBytes_) {
        std::pop_heap(heads.begin(), heads.end(), later);
        const Head head = heads.back();
        heads.pop_back();
        Day& d = days[head.day];
        if (head.index + 1 < d.record->files.size()) {
            heads.push_back({d.record->files[head.index + 1].timeKey, head.day, head.index + 1});
            std::push_heap(heads.begin(), heads.end(), later);
        }
        const VideoFileRecord& file = d.record->files[head.index];
        // A file the stream still writes refuses; it stays counted and
        // comes round again on a later pass. One removed by hand is missing:
        // it leaves the index and the totals as if deleted here, or it would
        // stay counted for ever and newer files would go in its place.
        if (hooks_.deleteFile(file.path) == platform::FileDeleteResult::refused)
            continue;
        totalBytes_ -= file.size;
        d.stream->bytes -= file.size;
        d.record->bytes -= file.size;
        d.deleted.resize(d.record->files.size(), false);
        d.deleted[head.index] = true;
        touchedStreams.insert(d.streamName);
        any = true;
    }
    if (!any)
        return false;
    for (Day& d : days) {
        if (d.deleted.empty())
            continue;
        std::vector<VideoFileRecord> kept;
        kept.reserve(d.record->files.size());
        for (std::size_t i = 0; i < d.record->files.size(); ++i) {
            VideoFileRecord& file = d.record->files[i];
            if (d.deleted[i]) {
                if (d.record->namesMade)
                    d.record->names.erase(nameOf(file.path));
            }
            else
                kept.push_back(std::move(file));
        }
        d.record->files = std::move(kept);
    }
    sweepEmptyDays(touchedStreams);
    return true;
}

void VideoArchive::sweepEmptyDays(const std::set<const std::string*>& streams)
{
    for (auto& entry : streams_) {
        // Named, not bound: clang 14 can't capture a structured binding
        // in the lambda below.
        const std::string& streamName = entry.first;
        auto& stream = entry.second;
        if (!streams.contains(&streamName) || !isFolder(root_ / streamName))
            continue;
        std::vector<fs::path> empty;
        forEachEntry(root_ / streamName, [&](const platform::FolderEntry& dayEntry,
                                             const platform::FolderReader& days) {
            if (dayEntry.kind != platform::EntryKind::folder)
                return;
            const fs::path dayFolder = days.pathOf(dayEntry);
            // A folder unchanged since a settled listing still holds the
            // files the index has of it: no need to open it.
            const auto known = stream.days.find(dayFolder.filename().string());
            fs::file_time_type time{};
            if (known != stream.days.end() && !known->second.files.empty() && known->second.listedForGood &&
                folderTime(dayFolder, time) && time == known->second.listedTime)
                return;
            if (folderIsEmpty(dayFolder))
                empty.push_back(dayFolder);
        });
        for (const fs::path& folder : empty)
            if (hooks_.removeFolder(folder))
                stream.days.erase(folder.filename().string());
    }
}

} // namespace vx::maintenance
