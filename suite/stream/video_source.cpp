#include "video_source.h"

#include <algorithm>
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
    std::mutex mutex;
    imaging::Picture latest;
    std::atomic<bool> stop{false};
    std::atomic<bool> failed{false};
    std::atomic<bool> finished{false};

    // Once stopped, the owner may be gone: nothing is said or handed on.
    void say(const std::string& text) const
    {
        if (!stop && log)
            log(text);
    }
    void keep(const imaging::Picture& frame)
    {
        imaging::Picture copy = imaging::copyOf(frame);
        std::lock_guard<std::mutex> lock(mutex);
        latest = std::move(copy);
    }
    void drop()
    {
        std::lock_guard<std::mutex> lock(mutex);
        latest = imaging::Picture();
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

imaging::Picture VideoSource::latest() const
{
    std::lock_guard<std::mutex> lock(state_->mutex);
    return state_->latest;
}

bool VideoSource::failed() const
{
    return state_->failed;
}

bool VideoSource::stop(std::chrono::milliseconds wait)
{
    state_->stop = true;
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
            auto next = Clock::now();
            while (!s.stop && reader->read(frame) && !frame.empty()) {
                gotFrames = true;
                failures = 0;
                s.keep(frame);
                if (!s.stop && s.sink)
                    s.sink(frame, fps);
                // A link is read as its frames come: a camera that claims
                // more frames than it sends must not fall behind.
                if (link)
                    continue;
                next += std::chrono::microseconds(static_cast<long long>(1e6 / fps));
                while (!s.stop && Clock::now() < next)
                    std::this_thread::sleep_for(std::chrono::milliseconds(5));
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
