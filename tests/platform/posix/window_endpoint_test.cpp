// A window and its senders within one process (the sender on a thread of
// its own where the message must wait for the dispatch).
#include "platform/process_info.h"
#include "platform/window_endpoint.h"
#include "support/temp_dir.h"
#include "window_test_support.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

using namespace vx::platform;
using namespace vx::test;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int kWaitMs = 10000;

TEST(WindowEndpoint, IsFoundByClassAndTitleAndGoesAwayWithItsOwner)
{
    RuntimeSandbox sandbox;
    WindowHandle handle = 0;
    {
        auto window = createWindowEndpoint("Vexlane", "Менеджер Vexlane");
        ASSERT_TRUE(window);
        handle = window->handle();
        EXPECT_NE(handle, 0u);
        EXPECT_EQ(findWindow("Vexlane", "Менеджер Vexlane"), handle);
        EXPECT_EQ(findWindow("Vexlane", ""), handle);
        EXPECT_EQ(findWindow("", "Менеджер Vexlane"), handle);
        EXPECT_EQ(findWindow("", ""), handle);
        EXPECT_EQ(findWindow("Other", ""), 0u);
        EXPECT_EQ(findWindow("Vexlane", "Менеджер"), 0u);
        EXPECT_EQ(windowOwnerPid(handle), currentProcessId());
        EXPECT_TRUE(fileExists(windowSocket(handle)));
        EXPECT_TRUE(fileExists(windowRecord(handle)));
    }
    EXPECT_EQ(findWindow("Vexlane", ""), 0u);
    EXPECT_EQ(windowOwnerPid(handle), 0);
    EXPECT_FALSE(fileExists(windowSocket(handle)));
    EXPECT_FALSE(fileExists(windowRecord(handle)));
}

TEST(WindowEndpoint, CopyDataArrivesWholeWithItsCbDataAndTheHandlersResultComesBack)
{
    RuntimeSandbox sandbox;
    auto window = createWindowEndpoint("Vexlane", "");
    ASSERT_TRUE(window);
    CopyDataMessage seen;
    window->onCopyData = [&](const CopyDataMessage& message) {
        seen = message;
        return message.dwData == 42;
    };
    std::string text = "getimage 640 480 00000000DEADBEEF";
    text.resize(255, '\0');   // the streams' fixed block, zeros and all

    auto accepted = std::async(std::launch::async, [&] {
        bool result = false;
        const bool sent = sendCopyData(window->handle(), makeMessage(42, text), kWaitMs, &result);
        return std::make_pair(sent, result);
    });
    ASSERT_TRUE(window->dispatchOne(kWaitMs));
    EXPECT_EQ(accepted.get(), std::make_pair(true, true));
    EXPECT_EQ(seen.dwData, 42u);
    EXPECT_EQ(std::string(seen.payload.begin(), seen.payload.end()), text);

    auto refused = std::async(std::launch::async, [&] {
        bool result = true;
        const bool sent = sendCopyData(window->handle(), makeMessage(0xFFFFFFFFFFFFFFFFull, ""),
                                       kWaitMs, &result);
        return std::make_pair(sent, result);
    });
    ASSERT_TRUE(window->dispatchOne(kWaitMs));
    EXPECT_EQ(refused.get(), std::make_pair(true, false));
    EXPECT_EQ(seen.dwData, 0xFFFFFFFFFFFFFFFFull);
    EXPECT_TRUE(seen.payload.empty());

    // A stream's notification: its ID in cbData and no data at all; and
    // cbData beside a payload, laid out by hand.
    CopyDataMessage notification;
    notification.cbData = 0xFFFFFFFEu;
    auto sender = std::async(std::launch::async, [&] { return sendCopyData(window->handle(), notification, kWaitMs); });
    EXPECT_TRUE(window->dispatchOne(kWaitMs));
    EXPECT_TRUE(sender.get());
    EXPECT_EQ(seen.cbData, 0xFFFFFFFEu);
    EXPECT_TRUE(seen.payload.empty());
    RawConnection raw(window->handle());
    ASSERT_TRUE(raw.send(copyDataBytes(5, 2, "hi", 255)));
    EXPECT_TRUE(window->dispatchOne(kWaitMs));
    EXPECT_EQ(seen.dwData, 5u);
    EXPECT_EQ(seen.cbData, 255u);
    EXPECT_EQ(std::string(seen.payload.begin(), seen.payload.end()), "hi");
}

// A message no handler takes is still answered (refused), so its sender
// never waits; one sent while nobody dispatches times out.
TEST(WindowEndpoint, UnhandledMessagesAreAnsweredAndSendTimesOutWhenNobodyDispatches)
{
    RuntimeSandbox sandbox;
    auto window = createWindowEndpoint("Vexlane", "");
    ASSERT_TRUE(window);
    auto sender = std::async(std::launch::async, [&] {
        bool result = true;
        const bool sent = sendCopyData(window->handle(), makeMessage(1, "x"), kWaitMs, &result);
        return sent && !result && showWindow(window->handle(), ShowCommand::Restore, kWaitMs);
    });
    ASSERT_TRUE(window->dispatchOne(kWaitMs));
    ASSERT_TRUE(window->dispatchOne(kWaitMs));
    EXPECT_TRUE(sender.get());

    int handled = 0;
    window->onCopyData = [&](const CopyDataMessage&) { return ++handled, true; };
    const auto start = Clock::now();
    EXPECT_FALSE(sendCopyData(window->handle(), makeMessage(5, "late"), 200));
    const auto elapsed = millisecondsSince(start);
    EXPECT_GE(elapsed, 190);
    EXPECT_LT(elapsed, 5000);

    // The message itself isn't lost: handled late, its answer goes nowhere
    // (and costs this process no SIGPIPE).
    EXPECT_EQ(window->dispatchPending(), 1);
    EXPECT_EQ(handled, 1);
}

TEST(WindowEndpoint, MalformedDatagramsAreDroppedUnanswered)
{
    RuntimeSandbox sandbox;
    auto window = createWindowEndpoint("Vexlane", "");
    ASSERT_TRUE(window);
    int handled = 0;
    window->onCopyData = [&](const CopyDataMessage&) { return ++handled, true; };
    window->onShow = [&](ShowCommand) { ++handled; };
    window->onForeground = [&] { ++handled; };

    const std::vector<std::string> bad = {
        std::string(1, '\x01'),                                   // kind alone
        copyDataBytes(7, 3, "ab"),                                // the length says more than came
        copyDataBytes(7, 1, "abc"),                               // and less
        copyDataBytes(7, 0xFFFFFFFFu, "abc"),                     // a length to read far beyond
        copyDataBytes(7, 3, "abc").substr(0, 14),                 // header cut short
        std::string("\x02\x09", 2),                               // show with no such command
        std::string("\x02", 1),                                   // show without a command
        std::string("\x03\x00", 2),                               // foreground with a tail
        std::string("\x7f\x00\x00", 3),                           // no such kind
        std::string(70 * 1024, '\x01'),                           // over the largest datagram
    };
    std::vector<std::unique_ptr<RawConnection>> connections;
    for (const auto& bytes : bad) {
        connections.push_back(std::make_unique<RawConnection>(window->handle()));
        ASSERT_TRUE(connections.back()->connected());
        ASSERT_TRUE(connections.back()->send(bytes)) << bytes.size();
    }
    // Also one that connects and never sends, and one that sends nothing.
    RawConnection silent(window->handle());
    RawConnection empty(window->handle());
    ASSERT_TRUE(empty.send(""));

    EXPECT_EQ(window->dispatchPending(), 0);
    EXPECT_EQ(handled, 0);
    for (auto& connection : connections)
        EXPECT_EQ(connection->answer(kWaitMs), "eof");
    EXPECT_EQ(silent.answer(50), "timeout");

    // A well-formed message laid out by hand still gets through.
    RawConnection good(window->handle());
    ASSERT_TRUE(good.send(copyDataBytes(9, 3, "abc")));
    EXPECT_TRUE(window->dispatchOne(kWaitMs));
    EXPECT_EQ(good.answer(kWaitMs), std::string(1, '\x01'));
    EXPECT_EQ(handled, 1);
}

TEST(WindowEndpoint, ManyIdleConnectionsDoNotStopTheWindow)
{
    RuntimeSandbox sandbox;
    auto window = createWindowEndpoint("Vexlane", "");
    ASSERT_TRUE(window);
    window->onCopyData = [](const CopyDataMessage&) { return true; };
    std::vector<std::unique_ptr<RawConnection>> idle;
    for (int i = 0; i < 100; ++i) {
        idle.push_back(std::make_unique<RawConnection>(window->handle()));
        window->dispatchPending();
    }
    auto sender = std::async(std::launch::async, [&] {
        return sendCopyData(window->handle(), makeMessage(1, "x"), kWaitMs);
    });
    const auto deadline = Clock::now() + 10s;
    bool handled = false;
    while (!handled && Clock::now() < deadline)
        handled = window->dispatchOne(100);
    EXPECT_TRUE(handled);
    EXPECT_TRUE(sender.get());
}
