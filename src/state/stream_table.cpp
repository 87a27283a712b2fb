#include "state/stream_table.h"

#include <algorithm>

namespace vx::core {

StreamTable::StreamTable() { records_.reserve(16); }

std::int32_t lowestFreeId(std::vector<std::int32_t> ids, std::int32_t previous)
{
    if (ids.empty())
        return previous;
    if (ids.size() > static_cast<size_t>(maxStreams))
        ids.resize(maxStreams);
    std::sort(ids.begin(), ids.end());
    std::int32_t counter = 0;
    for (std::int32_t id : ids) {
        if (id != counter)
            break;   // a duplicate stops the walk at its second occurrence
        ++counter;
    }
    return counter;
}

void StreamTable::recomputeNextFreeId()
{
    std::vector<std::int32_t> ids;
    ids.reserve(records_.size());
    for (const auto& r : records_)
        ids.push_back(r.id);
    // An unloaded stream's ID stays taken: its file is still there.
    for (const auto& u : unloaded_)
        ids.push_back(u.id);
    nextFreeId_ = lowestFreeId(std::move(ids), nextFreeId_);
}

bool StreamTable::validIndex(std::int32_t index) const
{
    return index >= 0 && index < static_cast<std::int32_t>(records_.size());
}

bool StreamTable::addStream(const config::CameraCommon& config,
                            const config::CameraRecognition& recognition,
                            const config::CameraControl& control, std::int32_t& id, bool useGivenId)
{
    if (records_.size() >= static_cast<size_t>(maxStreams))
        return true;
    std::lock_guard<std::mutex> lock(streamDrawLock_);
    // The table lock too: the timer thread copies the sequence under it, and
    // an append may move the records.
    std::lock_guard<std::mutex> tableLock(streamTableLock_);
    CameraRuntime record;
    record.id = useGivenId ? id : nextFreeId_;
    id = record.id;
    record.config = config;
    record.recognition = recognition;
    record.control = control;
    // The sequence grows by half of its capacity when full.
    if (records_.size() == records_.capacity())
        records_.reserve(records_.capacity() + std::max<size_t>(1, records_.capacity() / 2));
    records_.push_back(std::move(record));
    recomputeNextFreeId();
    return false;
}

bool StreamTable::removeStream(std::int32_t index, std::string& name)
{
    if (!validIndex(index))
        return false;
    // The drawing reads the records and their names under its own lock.
    std::lock_guard<std::mutex> drawLock(streamDrawLock_);
    std::lock_guard<std::mutex> lock(streamTableLock_);
    name = records_[index].config.videoName;
    records_[index].mapping.reset();   // unmaps the picture block
    records_.erase(records_.begin() + index);
    for (auto& u : unloaded_)
        if (u.recordsBefore > index)
            --u.recordsBefore;
    recomputeNextFreeId();
    return true;
}

config::CameraCommon StreamTable::getConfig(std::int32_t index) const
{
    return validIndex(index) ? records_[index].config : defaultCameraCommon();
}

config::CameraRecognition StreamTable::getRecognition(std::int32_t index) const
{
    return validIndex(index) ? records_[index].recognition : config::CameraRecognition{};
}

config::CameraControl StreamTable::getControl(std::int32_t index) const
{
    return validIndex(index) ? records_[index].control : config::CameraControl{};
}

int StreamTable::setConfig(std::int32_t index, const config::CameraCommon& value)
{
    if (!validIndex(index))
        return 1;
    // A new name: the drawing and the per-tick pass read it.
    std::lock_guard<std::mutex> drawLock(streamDrawLock_);
    std::lock_guard<std::mutex> lock(streamTableLock_);
    records_[index].config = value;
    return 0;
}

int StreamTable::setRecognition(std::int32_t index, const config::CameraRecognition& value)
{
    if (!validIndex(index))
        return 1;
    std::lock_guard<std::mutex> drawLock(streamDrawLock_);
    std::lock_guard<std::mutex> lock(streamTableLock_);
    records_[index].recognition = value;
    return 0;
}

int StreamTable::setControl(std::int32_t index, const config::CameraControl& value)
{
    if (!validIndex(index))
        return 1;
    std::lock_guard<std::mutex> drawLock(streamDrawLock_);
    std::lock_guard<std::mutex> lock(streamTableLock_);
    records_[index].control = value;
    return 0;
}

bool StreamTable::togglePlanned(std::int32_t index, bool& newValue)
{
    if (!validIndex(index))
        return false;
    std::lock_guard<std::mutex> drawLock(streamDrawLock_);
    std::lock_guard<std::mutex> lock(streamTableLock_);
    records_[index].planned = !records_[index].planned;
    newValue = records_[index].planned;
    return true;
}

int StreamTable::isRunning(std::int32_t index) const
{
    return validIndex(index) ? (records_[index].running ? 1 : 0) : -1;
}

std::vector<std::int32_t> StreamTable::tableIds() const
{
    std::lock_guard<std::mutex> lock(streamTableLock_);
    std::vector<std::int32_t> ids;
    for (const auto& r : records_)
        ids.push_back(r.id);
    return ids;
}

std::vector<bool> StreamTable::tablePlanned() const
{
    std::lock_guard<std::mutex> lock(streamTableLock_);
    std::vector<bool> planned;
    for (const auto& r : records_)
        planned.push_back(r.planned);
    return planned;
}

namespace {

// The records' values with the unloaded streams' put in their places.
template <typename T, typename Record, typename Unloaded>
std::vector<T> mergeUnloaded(const std::vector<CameraRuntime>& records, const std::vector<UnloadedStream>& unloaded,
                             Record ofRecord, Unloaded ofUnloaded)
{
    std::vector<T> out;
    const int count = static_cast<int>(records.size());
    for (int i = 0; i <= count; ++i) {
        for (const auto& u : unloaded)
            if (u.recordsBefore == i || (i == count && u.recordsBefore > count))
                out.push_back(ofUnloaded(u));
        if (i < count)
            out.push_back(ofRecord(records[static_cast<size_t>(i)]));
    }
    return out;
}

} // namespace

std::vector<std::int32_t> StreamTable::collectIds() const
{
    std::lock_guard<std::mutex> lock(streamTableLock_);
    return mergeUnloaded<std::int32_t>(records_, unloaded_, [](const CameraRuntime& r) { return r.id; },
                                       [](const UnloadedStream& u) { return u.id; });
}

std::vector<bool> StreamTable::collectPlanned() const
{
    std::lock_guard<std::mutex> lock(streamTableLock_);
    return mergeUnloaded<bool>(records_, unloaded_, [](const CameraRuntime& r) { return r.planned; },
                               [](const UnloadedStream& u) { return u.autoRun; });
}

void StreamTable::reserveUnloaded(std::int32_t id, bool autoRun)
{
    std::lock_guard<std::mutex> lock(streamTableLock_);
    unloaded_.push_back({id, autoRun, static_cast<int>(records_.size())});
    recomputeNextFreeId();
}

std::vector<UnloadedStream> StreamTable::unloaded() const
{
    std::lock_guard<std::mutex> lock(streamTableLock_);
    return unloaded_;
}

bool StreamTable::idTaken(std::int32_t id) const
{
    std::lock_guard<std::mutex> lock(streamTableLock_);
    for (const auto& r : records_)
        if (r.id == id)
            return true;
    for (const auto& u : unloaded_)
        if (u.id == id)
            return true;
    return false;
}

CameraRuntime StreamTable::record(std::int32_t index) const
{
    std::lock_guard<std::mutex> lock(streamTableLock_);
    return validIndex(index) ? records_[index] : CameraRuntime{};
}

void StreamTable::withDrawLock(const std::function<void(std::vector<CameraRuntime>&)>& fn)
{
    std::lock_guard<std::mutex> lock(streamDrawLock_);
    fn(records_);
}

void StreamTable::updateCamera(const UpdateCameraHooks& hooks, int tileWidth, int tileHeight)
{
    // The pass works on a copy of the table. The copy and each write back
    // are made under the table lock, so a stream removed meanwhile on the
    // main thread is never touched; the window look-ups and requests run
    // outside it.
    std::vector<CameraRuntime> copies;
    {
        std::lock_guard<std::mutex> lock(streamTableLock_);
        copies = records_;
    }
    auto writeBack = [&](size_t i, std::int32_t id, const std::function<void(CameraRuntime&)>& change) {
        std::lock_guard<std::mutex> lock(streamTableLock_);
        if (i < records_.size() && records_[i].id == id)
            change(records_[i]);
    };
    for (size_t i = 0; i < copies.size(); ++i) {
        CameraRuntime& copy = copies[i];
        if (copy.hasImage && hooks.now && hooks.now() - copy.lastImageTime > 5) {
            writeBack(i, copy.id, [](CameraRuntime& r) { r.hasImage = false; });
            copy.hasImage = false;
        }
        if ((copy.channel.window == 0 || !copy.hasImage) && hooks.findWindow)
            copy.channel.window = hooks.findWindow(copy.config.videoName);
        if (copy.channel.window != 0) {
            writeBack(i, copy.id, [](CameraRuntime& r) { r.running = true; });
            if (hooks.requestImage)
                hooks.requestImage(copy.channel, tileWidth, tileHeight);
        } else {
            writeBack(i, copy.id, [](CameraRuntime& r) { r.running = false; });
        }
    }
}

int StreamTable::countTotal() const
{
    return static_cast<int>(records_.size());
}

int StreamTable::countRunning() const
{
    std::lock_guard<std::mutex> lock(streamTableLock_);
    std::vector<CameraRuntime> copies = records_;
    return static_cast<int>(std::count_if(copies.begin(), copies.end(),
                                          [](const CameraRuntime& r) { return r.running; }));
}

int StreamTable::countPlanned() const
{
    std::lock_guard<std::mutex> lock(streamTableLock_);
    std::vector<CameraRuntime> copies = records_;
    return static_cast<int>(std::count_if(copies.begin(), copies.end(),
                                          [](const CameraRuntime& r) { return r.planned; }));
}

} // namespace vx::core
