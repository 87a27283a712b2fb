#include "video_source.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "frame_reader.h"

namespace vx::stream {

using Clock = std::chrono::steady_clock;

bool isLink(const std::string& path)
{
    return path.find("://") != std::string::npos;
}

struct VideoSource::State {
    SourceSettings settings;
    Log log;
    FrameSink sink;
    mutable std::mutex mutex;
    mutable std::condition_variable wake;   // a still asked for or kept, or the end
    std::uint64_t read = 0;         // frames read so far
    std::uint64_t stillNumber = 0;  // which of them `still` is (0: none)
    bool stillWanted = false;
    imaging::Picture still;
    std::atomic<bool> stop{false};
    std::atomic<bool> failed{false};
    std::atomic<bool> finished{false};

    // Once stopped, the owner may be gone: nothing is said or handed on.
    void say(const std::string& text) const
    {
        if (!stop && log)
            log(text);
    }
    // Counts a frame read; its number.
    std::uint64_t count()
    {
        std::lock_guard<std::mutex> lock(mutex);
        return ++read;
    }
    bool wantsStill() const
    {
        std::lock_guard<std::mutex> lock(mutex);
        return stillWanted;
    }
    // Keeps frame `number` as the still, when one is wanted.
    void offer(const imaging::Picture& frame, std::uint64_t number)
    {
        if (!wantsStill())
            return;
        imaging::Picture copy = imaging::copyOf(frame);
        {
            std::lock_guard<std::mutex> lock(mutex);
            still = std::move(copy);
            stillNumber = number;
            stillWanted = false;
        }
        wake.notify_all();
    }
    void drop()
    {
        std::lock_guard<std::mutex> lock(mutex);
        still = imaging::Picture();
        stillNumber = 0;
    }
    // Waits until `until`; true (before then) when a still is wanted of the
    // frame read last, which isn't kept yet.
    bool waitForStill(Clock::time_point until)
    {
        std::unique_lock<std::mutex> lock(mutex);
        return wake.wait_until(lock, until, [this] { return stop || (stillWanted && stillNumber != read); }) &&
               !stop;
    }
    void end()
    {
        stop = true;
        { std::lock_guard<std::mutex> lock(mutex); }   // a waiter sees it before it sleeps again
        wake.notify_all();
    }
    bool pauseFor(double seconds) const
    {
        const auto until = Clock::now() + std::chrono::duration<double>(seconds);
        while (!stop && Clock::now() < until)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return !stop;
    }
};

namespace {

void readSource(VideoSource::State& s);

} // namespace

VideoSource::VideoSource(SourceSettings settings, Log log, FrameSink sink) : state_(std::make_shared<State>())
{
    state_->settings = std::move(settings);
    state_->log = std::move(log);
    state_->sink = std::move(sink);
    prepareFrameReaders(state_->settings);
    thread_ = std::thread([state = state_] { readSource(*state); });
}

VideoSource::~VideoSource()
{
    stop(std::chrono::milliseconds(300));
}

void VideoSource::askStill()
{
    {
        std::lock_guard<std::mutex> lock(state_->mutex);
        if (state_->stillNumber != 0 && state_->stillNumber == state_->read)
            return;   // the newest frame is kept already
        state_->stillWanted = true;
    }
    state_->wake.notify_all();
}

VideoSource::Still VideoSource::still(std::chrono::milliseconds wait) const
{
    State& s = *state_;
    std::unique_lock<std::mutex> lock(s.mutex);
    const auto newest = [&s] { return s.stillNumber != 0 && s.stillNumber == s.read; };
    s.wake.wait_for(lock, wait, [&s, &newest] { return s.stop || newest(); });
    return {s.still, newest()};
}

bool VideoSource::failed() const
{
    return state_->failed;
}

bool VideoSource::stop(std::chrono::milliseconds wait)
{
    state_->end();
    if (!thread_.joinable())
        return state_->finished;
    const auto until = Clock::now() + wait;
    while (!state_->finished && Clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    if (state_->finished) {
        thread_.join();
        return true;
    }
    thread_.detach();   // it holds its own share of the state
    return false;
}

namespace {

void readSource(VideoSource::State& s)
{
    const SourceSettings& settings = s.settings;
    const bool link = isLink(settings.path);
    int failures = 0;   // attempts since the last frame
    // A file that can't be played keeps the stream waiting for "quit"; a
    // link that is given up on ends the stream.
    auto giveUp = [&s, link] {
        if (link) {
            s.failed = true;
            return;
        }
        while (!s.stop)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
    };
    while (!s.stop) {
        const std::unique_ptr<FrameReader> reader =
            openFrameReader(settings, link, [&s](const std::string& text) { s.say(text); });
        bool gotFrames = false;
        if (s.stop)
            break;
        if (!reader) {
            s.say("Video source can't be opened: " + settings.path);
        } else {
            double fps = reader->fps();
            if (!(fps > 0.5 && fps < 200))
                fps = settings.fps > 0 ? settings.fps : 5.0;
            s.say("Video source opened: " + settings.path);
            imaging::Picture frame;
            const auto period = std::chrono::microseconds(static_cast<long long>(1e6 / fps));
            auto next = Clock::now();
            bool readable = true;
            while (readable && !s.stop && reader->grab()) {
                const std::uint64_t number = s.count();
                // Converted for the recorder, which takes every frame, or for
                // a still asked for.
                if (s.sink || s.wantsStill()) {
                    readable = reader->retrieve(frame) && !frame.empty();
                    if (!readable)
                        break;
                    s.offer(frame, number);
                    if (!s.stop && s.sink)
                        s.sink(frame, fps);
                }
                gotFrames = true;
                failures = 0;
                // A link is read as its frames come: a camera that claims
                // more frames than it sends must not fall behind.
                if (link)
                    continue;
                // A file waits for its next frame's time; a still asked for
                // meanwhile is the frame held.
                next += period;
                while (readable && s.waitForStill(next)) {
                    readable = reader->retrieve(frame) && !frame.empty();
                    if (readable)
                        s.offer(frame, number);
                }
            }
            if (s.stop)
                break;
            if (gotFrames && !link)
                continue;   // a file starts again at its end
            s.drop();
            s.say("Video source lost: " + settings.path);
        }
        if (!settings.reconnect) {
            if (link)
                s.say("Video source: reconnection is off, the stream ends");
            giveUp();
            break;
        }
        ++failures;
        if (settings.attempts > 0 && failures > settings.attempts) {
            s.say("Video source: no attempts left");
            giveUp();
            break;
        }
        if (!s.pauseFor(std::max(1, settings.secondsToReconnect)))
            break;
        s.say("Video source: reconnecting, attempt " + std::to_string(failures) +
              (settings.attempts > 0 ? " of " + std::to_string(settings.attempts) : std::string()) + ": " +
              settings.path);
    }
    s.finished = true;
}

} // namespace
} // namespace vx::stream
