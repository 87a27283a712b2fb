#include <gtest/gtest.h>

#include "state/stream_table.h"

using namespace vx;
using namespace vx::core;

namespace {

config::CameraCommon named(const std::string& name)
{
    config::CameraCommon c;
    c.videoName = name;
    return c;
}

std::int32_t add(StreamTable& table, std::int32_t id, bool useGivenId = true, const std::string& name = "cam")
{
    std::int32_t inOut = id;
    EXPECT_FALSE(table.addStream(named(name), {}, {}, inOut, useGivenId));
    return inOut;
}

} // namespace

TEST(LowestFreeId, WalksSortedIdsUntilTheFirstGapAmongTheFirstHundred)
{
    EXPECT_EQ(lowestFreeId({3, 1, 0}, 0), 2);
    EXPECT_EQ(lowestFreeId({0, 1, 2}, 0), 3);
    // A duplicate stops the walk at its second occurrence.
    EXPECT_EQ(lowestFreeId({0, 0, 1}, 0), 1);
    // An empty table keeps the previous value.
    EXPECT_EQ(lowestFreeId({}, 5), 5);
    std::vector<std::int32_t> ids;
    for (int i = 0; i < 100; ++i)
        ids.push_back(i + 1);   // 1..100: 0 is free
    ids.push_back(0);           // the 101st is beyond the walk
    EXPECT_EQ(lowestFreeId(ids, 0), 0);
}

TEST(StreamTable, FreshRecordsCarryTheStreamDefaults)
{
    StreamTable table;
    add(table, 0);
    const CameraRuntime r = table.record(0);
    EXPECT_FALSE(r.running);
    EXPECT_TRUE(r.planned);
    EXPECT_FALSE(r.hasImage);
    EXPECT_EQ(r.channel.timeoutMs, 200);
    EXPECT_EQ(r.channel.window, 0u);
    // A bad index gives the default record of a fresh stream.
    EXPECT_EQ(table.getConfig(5).widthWindow, 800);
    EXPECT_EQ(table.getRecognition(-1).method, 1);
    EXPECT_EQ(table.getControl(100).ControlPortServer, 1235);
}

TEST(StreamTable, IdentifiersComeFromFilesOrFromTheLowestFree)
{
    StreamTable table;
    add(table, 0, true, "a");
    add(table, 1, true, "b");
    add(table, 3, true, "c");
    EXPECT_EQ(table.nextFreeId(), 2);
    EXPECT_EQ(add(table, 99, false, "d"), 2);   // the given id is ignored without useGivenId
    EXPECT_EQ(table.nextFreeId(), 4);
    // Removal keeps the order and reports the name.
    std::string name;
    EXPECT_FALSE(table.removeStream(4, name));
    ASSERT_TRUE(table.removeStream(0, name));
    EXPECT_EQ(name, "a");
    EXPECT_EQ(table.nextFreeId(), 0);
    EXPECT_EQ(table.collectIds(), (std::vector<std::int32_t>{1, 3, 2}));
    EXPECT_EQ(table.getConfig(1).videoName, "c");
}

TEST(StreamTable, RefusesTheHundredAndFirstStream)
{
    StreamTable table;
    for (int i = 0; i < maxStreams; ++i)
        add(table, i);
    std::int32_t id = 500;
    EXPECT_TRUE(table.addStream({}, {}, {}, id, true));   // true means failure
    EXPECT_EQ(table.size(), maxStreams);
    EXPECT_EQ(id, 500);
    EXPECT_EQ(table.nextFreeId(), 100);
}

TEST(StreamTable, UpdateFindsWindowsByNameAndRequestsPictures)
{
    StreamTable table;
    add(table, 0, true, "gate");
    add(table, 1, true, "yard");
    std::vector<platform::WindowHandle> requested;
    UpdateCameraHooks hooks;
    hooks.now = [] { return std::int64_t{1000}; };
    hooks.findWindow = [](const std::string& name) -> platform::WindowHandle { return name == "gate" ? 42 : 0; };
    hooks.requestImage = [&](const StreamChannel& channel, int w, int h) {
        EXPECT_EQ(w, 320);
        EXPECT_EQ(h, 320);
        requested.push_back(channel.window);
    };
    table.updateCamera(hooks, 320, 320);
    EXPECT_EQ(table.isRunning(0), 1);
    EXPECT_EQ(table.isRunning(1), 0);
    EXPECT_EQ(requested, std::vector<platform::WindowHandle>{42});
    EXPECT_EQ(table.countRunning(), 1);

    // The process died: the next pass finds no window and clears the flag.
    hooks.findWindow = [](const std::string&) -> platform::WindowHandle { return 0; };
    table.updateCamera(hooks, 320, 320);
    EXPECT_EQ(table.isRunning(0), 0);
}

TEST(StreamTable, StalePictureMakesTheUpdateLookForTheWindowAgain)
{
    StreamTable table;
    add(table, 0, true, "gate");
    table.withDrawLock([](std::vector<CameraRuntime>& records) {
        records[0].hasImage = true;
        records[0].lastImageTime = 100;
        records[0].channel.window = 7;
    });
    int lookups = 0;
    std::vector<platform::WindowHandle> requested;
    UpdateCameraHooks hooks;
    std::int64_t now = 105;
    hooks.now = [&] { return now; };
    hooks.findWindow = [&](const std::string&) -> platform::WindowHandle { ++lookups; return 9; };
    hooks.requestImage = [&](const StreamChannel& c, int, int) { requested.push_back(c.window); };

    // Five seconds old is still fresh: the known window is used.
    table.updateCamera(hooks, 320, 320);
    EXPECT_EQ(lookups, 0);
    EXPECT_TRUE(table.record(0).hasImage);
    // Older than five seconds: the picture is dropped and the window looked up.
    now = 106;
    table.updateCamera(hooks, 320, 320);
    EXPECT_EQ(lookups, 1);
    EXPECT_FALSE(table.record(0).hasImage);
    EXPECT_EQ(requested, (std::vector<platform::WindowHandle>{7, 9}));
}
