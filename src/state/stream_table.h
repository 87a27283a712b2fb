#pragma once
// The manager's picture of all streams: one record per stream, in the order
// they were added. A stream's position is its index (tiles, hit tests and
// edits speak of indexes); files and services speak of its identifier.
#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "state/camera_runtime.h"

namespace vx::core {

constexpr int maxStreams = 100;

// What the per-tick pass needs from the world around it.
struct UpdateCameraHooks {
    std::function<std::int64_t()> now;   // seconds of calendar time
    // The handle of the window titled `videoName`, 0 when there is none.
    std::function<platform::WindowHandle(const std::string& videoName)> findWindow;
    // Starts an image request for one stream (handed a copy of its channel).
    std::function<void(const StreamChannel& channel, int tileWidth, int tileHeight)> requestImage;
};

// A stream named in the main config whose file couldn't be loaded at
// start-up. It has no record and no tile, but its ID stays taken and the
// main config keeps listing it, in its place and with its autorun flag, so
// that nothing is lost and no new stream takes over its file.
struct UnloadedStream {
    std::int32_t id = 0;
    bool autoRun = false;
    int recordsBefore = 0;   // records of the table listed before it
};

class StreamTable {
public:
    StreamTable();

    // Adds a record. Returns true on FAILURE (the table is full). The record
    // takes `id` when `useGivenId`, the lowest free identifier otherwise; the
    // identifier used is reported back through `id`.
    bool addStream(const config::CameraCommon& config, const config::CameraRecognition& recognition,
                   const config::CameraControl& control, std::int32_t& id, bool useGivenId);
    // Removes the record at `index`; the stream's process and file stay.
    bool removeStream(std::int32_t index, std::string& name);

    config::CameraCommon getConfig(std::int32_t index) const;
    config::CameraRecognition getRecognition(std::int32_t index) const;
    config::CameraControl getControl(std::int32_t index) const;
    int setConfig(std::int32_t index, const config::CameraCommon& value);
    int setRecognition(std::int32_t index, const config::CameraRecognition& value);
    int setControl(std::int32_t index, const config::CameraControl& value);

    bool togglePlanned(std::int32_t index, bool& newValue);
    // The running flag, or -1 for a bad index.
    int isRunning(std::int32_t index) const;

    // The lists saveConfig writes: the records' identifiers and planned
    // flags in table order, the unloaded streams kept in their places.
    std::vector<std::int32_t> collectIds() const;
    std::vector<bool> collectPlanned() const;
    // The records' own identifiers and planned flags, by table index.
    std::vector<std::int32_t> tableIds() const;
    std::vector<bool> tablePlanned() const;

    // Keeps the place and the ID of a stream whose file couldn't be loaded;
    // it goes after the records added so far.
    void reserveUnloaded(std::int32_t id, bool autoRun);
    std::vector<UnloadedStream> unloaded() const;
    // Whether the identifier is taken, by a record or an unloaded stream.
    bool idTaken(std::int32_t id) const;

    // The per-tick pass: drops stale pictures, looks for the streams'
    // windows and spawns one image request per stream that has one.
    void updateCamera(const UpdateCameraHooks& hooks, int tileWidth, int tileHeight);

    // Counters of the status panel, each counted under the table lock.
    int countTotal() const;
    int countRunning() const;
    int countPlanned() const;

    std::int32_t nextFreeId() const { return nextFreeId_; }
    int size() const { return static_cast<int>(records_.size()); }
    bool validIndex(std::int32_t index) const;

    // A copy of one record (default record for a bad index), taken under
    // the table lock: tasks read it while the main thread edits.
    CameraRuntime record(std::int32_t index) const;
    // Runs `fn` on the records under the drawing lock (tile drawing, storing
    // a picture).
    void withDrawLock(const std::function<void(std::vector<CameraRuntime>&)>& fn);

    // The tiles' side at the last drawing (0 before it): a picture is
    // decoded no larger than it needs and stored ready for its tile.
    int tileSide() const { return tileSide_.load(std::memory_order_relaxed); }
    void setTileSide(int side) { tileSide_.store(side, std::memory_order_relaxed); }

    std::mutex& streamTableLock() const { return streamTableLock_; }
    std::mutex& streamDrawLock() const { return streamDrawLock_; }

private:
    void recomputeNextFreeId();

    std::vector<CameraRuntime> records_;
    std::vector<UnloadedStream> unloaded_;
    std::int32_t nextFreeId_ = 0;
    mutable std::mutex streamTableLock_;
    mutable std::mutex streamDrawLock_;
    std::atomic<int> tileSide_{0};
};

// The walk that finds the lowest identifier not in use among the first
// `maxStreams` identifiers. `previous` is kept for an empty list.
std::int32_t lowestFreeId(std::vector<std::int32_t> ids, std::int32_t previous);

} // namespace vx::core
