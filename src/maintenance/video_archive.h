#pragma once
// The video archive below videoPath: stream folders, day folders
// ("2024_05_01") and the .webm files the stream processes write and never
// delete. VideoArchive keeps the tree under a size limit by deleting the
// oldest files across all streams. It reads the whole tree once, then keeps
// a running index that each quota pass brings up to date from three day
// folders per stream only (yesterday, today, tomorrow).
//
// One key per stream folder: the folder's own name, in the full scan and in
// the pass alike. Symbolic links are never followed, neither to folders nor
// to files: what lies outside the tree is neither counted nor deleted.
//
// One thread at a time: the owner holds the archive mutex around every pass
// and around replacing the object.
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/file_delete.h"
#include "platform/folder_reader.h"

namespace vx::maintenance {

struct VideoFileRecord {
    std::filesystem::path path;   // full path
    std::uint64_t timeKey = 0;    // YYYYMMDDhhmmss
    std::uint64_t size = 0;       // bytes
};

struct VideoDayRecord {
    std::vector<VideoFileRecord> files;   // by time key; equal keys in the order they were found
    std::uint64_t bytes = 0;
    // The file names in `files`, for the "already indexed" test; made when
    // a pass first looks at the day (the full scan leaves them out, as one
    // listing never holds a name twice).
    std::unordered_set<std::string> names;
    bool namesMade = true;
    // The folder's time of change as it was before its last listing, and
    // whether that listing saw it for good (the time wasn't too recent):
    // then a pass that finds the same time need not list it again.
    std::filesystem::file_time_type listedTime{};
    bool listedForGood = false;
};

struct VideoStreamRecord {
    std::map<std::string, VideoDayRecord> days;   // by day folder name
    std::uint64_t bytes = 0;
};

// A video file's name: "video_stream_<id>_YYYY_MM_DD_hh_mm_ss" followed by a
// "(" suffix or the extension, longer than 29 characters. True with the time
// key and the stream folder ("stream<id>") for a valid name.
bool parseVideoName(const std::string& name, std::uint64_t& timeKeyOut, std::string& streamFolderOut);

// What the archive asks of the system, replaceable in tests.
struct VideoArchiveHooks {
    std::function<std::time_t()> now;                             // calendar time
    // refused: the file stays counted (the stream still writes it); missing:
    // it went by other hands and leaves the index as a deleted one does.
    std::function<platform::FileDeleteResult(const std::filesystem::path&)> deleteFile;
    std::function<bool(const std::filesystem::path&)> removeFolder;
};

class VideoArchive {
public:
    // Builds the index with a full scan of `root`.
    VideoArchive(std::filesystem::path root, std::uint32_t limitMb, VideoArchiveHooks hooks = {});

    // One quota pass: new stream folders, new files of the three day folders,
    // then oldest-first deletion while the total is above the limit, then
    // the sweep of empty day folders in the streams a pass deleted from.
    void enforceQuota();

    std::uint64_t totalBytes() const { return totalBytes_; }
    std::uint64_t limitBytes() const { return limitBytes_; }
    const std::filesystem::path& root() const { return root_; }
    const std::map<std::string, VideoStreamRecord>& streams() const { return streams_; }

    // The three day folder names a pass looks at, for `now`: the day before,
    // the day, the day after.
    static std::vector<std::string> dayFolders(std::time_t now);

private:
    void fullScan();
    // Adds a parsed file at the end of a stream's day unless it is there
    // already (the caller puts the day in order again); true when added.
    bool addFile(VideoStreamRecord& stream, VideoDayRecord& day, platform::FolderReader& reader,
                 const platform::FolderEntry& entry, std::uint64_t timeKey);
    // Deletes oldest first while over the limit, then sweeps the day folders
    // of the streams it deleted from. True when anything went.
    bool deleteOldest();
    void sweepEmptyDays(const std::set<const std::string*>& streams);

    std::filesystem::path root_;
    std::uint64_t limitBytes_ = 0;
    std::uint64_t totalBytes_ = 0;
    std::map<std::string, VideoStreamRecord> streams_;   // by stream folder name
    VideoArchiveHooks hooks_;
};

} // namespace vx::maintenance
