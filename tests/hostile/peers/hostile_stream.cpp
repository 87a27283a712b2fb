// hostile_stream: a stream process that misbehaves on the real channel. It
// registers its window under a title as vxVideoStream does, creates its
// picture block, and answers the manager's "getimage" with a bad block:
//
//   hostile_stream <mode> <stream id> <title> <seconds> <notifications per second>
//
//   no-zero         the block is "g" throughout: a header without its zero byte
//   past-view       "getimage:<own window>:600000", a length past the 500000-byte view
//   unknown-handle  a good JPEG under a window handle nobody has
//   flood           a good JPEG under its own window
//
// Besides answering each request it sends its notification unasked, at the
// given rate for the given seconds, without waiting for the manager's
// acknowledgement (a send with no time to wait). It prints "ready" once its
// window is registered and "done <sent>" when the notifications end, then
// goes on answering requests until its standard input ends or it is killed.
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <thread>

#include "imaging/picture_ops.h"
#include "platform/shared_block.h"
#include "platform/window_endpoint.h"

using namespace vx;
using Clock = std::chrono::steady_clock;

namespace {

constexpr std::size_t blockSize = 500000;

bool inputEnded()
{
    pollfd entry{STDIN_FILENO, POLLIN, 0};
    if (::poll(&entry, 1, 0) <= 0)
        return false;
    char byte;
    return ::read(STDIN_FILENO, &byte, 1) <= 0;
}

std::vector<std::uint8_t> testPicture()
{
    imaging::Picture picture = imaging::makePicture(320, 240, 3);
    imaging::fill(picture, {40, 160, 220, 0});
    return imaging::encodeJpeg(picture, 80);
}

void writeHeader(char* block, const std::string& header, const std::vector<std::uint8_t>& picture)
{
    std::memcpy(block, header.c_str(), header.size() + 1);
    std::memcpy(block + header.size() + 1, picture.data(), picture.size());
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 6) {
        std::cerr << "usage: hostile_stream <mode> <id> <title> <seconds> <rate>" << std::endl;
        return 2;
    }
    const std::string mode = argv[1];
    const auto id = static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10));
    const std::string title = argv[3];
    const double seconds = std::atof(argv[4]);
    const int rate = std::atoi(argv[5]);

    auto block = platform::createSharedBlock("VxVideoStreamSharedMemoryID" + std::to_string(id), blockSize);
    auto window = platform::createWindowEndpoint("vxVideoStream", title);
    if (!block || !window) {
        std::cerr << "hostile_stream: no block or window" << std::endl;
        return 1;
    }
    char* data = block->writableData();
    const std::vector<std::uint8_t> picture = testPicture();
    char own[32];
    std::snprintf(own, sizeof own, "%llx", static_cast<unsigned long long>(window->handle()));
    if (mode == "no-zero") {
        std::memset(data, 'g', blockSize);
    } else if (mode == "past-view") {
        writeHeader(data, std::string("getimage:") + own + ":600000", picture);
    } else if (mode == "unknown-handle") {
        writeHeader(data, "getimage:7e57ab1e0000:" + std::to_string(picture.size()), picture);
    } else if (mode == "flood") {
        writeHeader(data, std::string("getimage:") + own + ":" + std::to_string(picture.size()), picture);
    } else {
        std::cerr << "hostile_stream: unknown mode " << mode << std::endl;
        return 2;
    }

    platform::WindowHandle manager = 0;
    bool requested = false;
    window->onCopyData = [&manager, &requested](const platform::CopyDataMessage& message) {
        const auto end = std::find(message.payload.begin(), message.payload.end(), '\0');
        const std::string text(message.payload.begin(), end);
        unsigned width = 0, height = 0;
        char target[32] = {};
        if (std::sscanf(text.c_str(), "getimage %u %u %31s", &width, &height, target) == 3) {
            manager = std::strtoull(target, nullptr, 16);
            requested = true;
        }
        return true;
    };
    std::cout << "ready" << std::endl;

    platform::CopyDataMessage notification;
    notification.cbData = id;
    // The manager's window is learnt from its first request.
    const auto waitEnd = Clock::now() + std::chrono::seconds(30);
    while (manager == 0 && Clock::now() < waitEnd && !inputEnded())
        window->dispatchOne(50);
    if (manager == 0)
        return 1;

    // Notifications in bursts every 10 ms, so the rate holds without a
    // sleep per message.
    long sent = 0;
    const auto start = Clock::now();
    const auto end = start + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    const auto burstPeriod = std::chrono::milliseconds(10);
    const long perBurst = std::max(1, rate / 100);
    for (auto next = start; next < end; next += burstPeriod) {
        std::this_thread::sleep_until(next);
        for (long i = 0; i < perBurst; ++i) {
            platform::sendCopyData(manager, notification, 0);
            ++sent;
        }
        window->dispatchPending();
    }
    std::cout << "done " << sent << std::endl;

    // From now on only the requests are answered, each with the same block.
    while (!inputEnded()) {
        requested = false;
        window->dispatchOne(100);
        if (requested)
            platform::sendCopyData(manager, notification, 1000);
    }
    return 0;
}
