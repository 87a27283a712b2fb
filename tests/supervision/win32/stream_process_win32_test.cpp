// The real vxVideoStream.exe under Windows, started from a folder whose path
// holds blanks and Cyrillic letters: found by its window's title, it answers
// "getimage" through its picture block and leaves on "quit" with code 0. Once
// on a file Media Foundation can't play (the generated picture), once on an
// MJPEG AVI written here through the system's AVIFile library.
#include <gtest/gtest.h>

#include <windows.h>
#include <vfw.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>

#include "config/camera_config.h"
#include "config/text_codec.h"
#include "imaging/picture_ops.h"
#include "platform/paths.h"
#include "platform/process.h"
#include "platform/process_info.h"
#include "platform/shared_block.h"
#include "platform/window_endpoint.h"
#include "support/child_process.h"
#include "support/installation.h"
#include "supervision/stream_channel.h"

namespace vx::supervision {
namespace {

namespace fs = std::filesystem;

const std::string pid = std::to_string(platform::currentProcessId());

std::string utf8(const fs::path& path)
{
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

// Ten seconds of one colour, 320x240 at 10 fps, Motion-JPEG in AVI. Wine's
// AVIFile can't open a path with Cyrillic letters: the file is made under a
// plain name and then moved.
bool writeAvi(const fs::path& file, const imaging::PictureColour& colour)
{
    const fs::path plain = fs::temp_directory_path() / ("vx-stream-" + pid + ".avi");
    imaging::Picture frame = imaging::makePicture(320, 240, 3);
    imaging::fill(frame, colour);
    const std::vector<std::uint8_t> jpeg = imaging::encodeJpeg(frame, 90);
    AVISTREAMINFOW info{};
    info.fccType = streamtypeVIDEO;
    info.fccHandler = mmioFOURCC('M', 'J', 'P', 'G');
    info.dwScale = 1;
    info.dwRate = 10;
    SetRect(&info.rcFrame, 0, 0, 320, 240);
    BITMAPINFOHEADER format{sizeof(BITMAPINFOHEADER), 320, 240, 1, 24, mmioFOURCC('M', 'J', 'P', 'G'), 320 * 240 * 3,
                            0, 0, 0, 0};
    AVIFileInit();
    PAVIFILE avi = nullptr;
    PAVISTREAM stream = nullptr;
    bool ok = !jpeg.empty() && AVIFileOpenW(&avi, plain.c_str(), OF_CREATE | OF_WRITE, nullptr) == 0 &&
              AVIFileCreateStreamW(avi, &stream, &info) == 0 && AVIStreamSetFormat(stream, 0, &format, sizeof format) == 0;
    for (LONG i = 0; ok && i < 100; ++i)
        ok = AVIStreamWrite(stream, i, 1, const_cast<std::uint8_t*>(jpeg.data()), static_cast<LONG>(jpeg.size()),
                            AVIIF_KEYFRAME, nullptr, nullptr) == 0;
    if (stream)
        AVIStreamRelease(stream);
    if (avi)
        AVIFileRelease(avi);
    AVIFileExit();
    std::error_code ec;
    if (ok)
        fs::rename(plain, file, ec);
    fs::remove(plain);
    return ok && !ec;
}

// A camera file in a Cyrillic folder with blanks, and the stream started on it.
class RunningStream {
public:
    explicit RunningStream(const fs::path& video)
    {
        fs::create_directories(root / "configs");
        config::CameraConfig camera;
        camera.common.ID = id;
        camera.common.videoName = config::utf8ToCp1251(title);
        camera.common.videoPath = config::utf8ToCp1251(utf8(video));
        const std::string cameraFile = config::cameraFilePath(config::utf8ToCp1251(utf8(root / "configs")), id);
        config::saveCamera(cameraFile, camera, 1234, 1235);
        const fs::path bin = platform::folderOf(platform::folderOf(platform::executablePath())) / "bin";
        process = test::ChildProcess::start(bin / "vxVideoStream.exe",
                                            {config::cp1251ToUtf8(cameraFile), utf8(root), utf8(root / "stream log.txt")});
        manager = platform::createWindowEndpoint("VexlaneTest", "stream test " + pid);
        manager->onCopyData = [this](const platform::CopyDataMessage& m) {
            notifications.push_back(m);
            return true;
        };
    }
    ~RunningStream()
    {
        if (process && !process->waitExit(0))
            platform::terminateProcess(process->pid());
        std::error_code ec;
        fs::remove_all(root.parent_path(), ec);
    }
    std::string log() const
    {
        std::ifstream in(root / "stream log.txt", std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    // The picture of a "getimage" the stream answered, its header checked.
    // Until the first frame requests go unanswered: asked every second, 10 s.
    imaging::Picture picture(int width, int height)
    {
        char command[64];
        std::snprintf(command, sizeof command, "getimage %d %d %llx", width, height,
                      static_cast<unsigned long long>(manager->handle()));
        for (int attempt = 0; attempt < 10; ++attempt) {
            notifications.clear();
            if (!sendText(window, command, 1000))
                return {};
            if (test::waitFor([&] { return manager->dispatchPending(), !notifications.empty(); }, 1000))
                break;
        }
        // The stream says who it is by its ID in cbData.
        if (notifications.empty() || notifications[0].cbData != static_cast<std::uint32_t>(id))
            return {};
        auto block = platform::openSharedBlock("VxVideoStreamSharedMemoryID" + std::to_string(id), 500000);
        if (!block)
            return {};
        const std::string header = block->data();
        char prefix[64];
        std::snprintf(prefix, sizeof prefix, "getimage:%llx:", static_cast<unsigned long long>(window));
        const std::size_t length = std::strtoull(header.c_str() + std::strlen(prefix), nullptr, 10);
        EXPECT_EQ(header.rfind(prefix, 0), 0u) << header;
        if (length == 0 || header.size() + 1 + length > 500000)
            return {};
        return imaging::decodePicture({reinterpret_cast<const std::uint8_t*>(block->data()) + header.size() + 1, length});
    }

    const std::int32_t id = 100 + static_cast<std::int32_t>(platform::currentProcessId() % 1000);
    const std::string title = "Поток " + std::to_string(id);
    const fs::path root = fs::temp_directory_path() / fs::path(L"vx-stream-" + std::to_wstring(platform::currentProcessId())) /
                          L"Камера 1 поток";
    std::unique_ptr<test::ChildProcess> process;
    std::unique_ptr<platform::WindowEndpoint> manager;
    std::vector<platform::CopyDataMessage> notifications;
    platform::WindowHandle window = 0;
};

TEST(StreamProcessWin32, GeneratedPictureForAFileItCantPlayThenQuit)
{
    const fs::path missing = fs::temp_directory_path() / L"нет такого файла.avi";
    RunningStream stream(missing);
    ASSERT_TRUE(stream.process);
    ASSERT_TRUE(test::waitFor([&] { return (stream.window = platform::findWindow("", stream.title)) != 0; }, 10000));
    EXPECT_EQ(platform::windowOwnerPid(stream.window), stream.process->pid());

    const imaging::Picture first = stream.picture(160, 120);
    ASSERT_EQ(std::pair(first.width, first.height), std::pair(160, 120)) << stream.log();
    // The scene moves: a picture half a second later differs.
    Sleep(500);
    const imaging::Picture later = stream.picture(160, 120);
    ASSERT_EQ(std::pair(later.width, later.height), std::pair(160, 120));
    EXPECT_NE(std::memcmp(first.data, later.data, first.stride * 120), 0);

    ASSERT_TRUE(sendText(stream.window, "quit", 1000));
    EXPECT_EQ(stream.process->waitExit(10000), 0);
    EXPECT_NE(stream.log().find("a generated picture is shown instead"), std::string::npos) << stream.log();
}

TEST(StreamProcessWin32, MotionJpegAviThroughMediaFoundation)
{
    const fs::path avi = fs::temp_directory_path() / fs::path(L"vx-avi-" + std::to_wstring(platform::currentProcessId())) /
                         L"въезд 1.avi";
    fs::create_directories(avi.parent_path());
    // B G R far apart, so crossed channels show.
    ASSERT_TRUE(writeAvi(avi, {200, 120, 40}));
    RunningStream stream(avi);
    ASSERT_TRUE(stream.process);
    ASSERT_TRUE(test::waitFor([&] { return (stream.window = platform::findWindow("", stream.title)) != 0; }, 10000));

    const imaging::Picture picture = stream.picture(160, 120);
    ASSERT_EQ(std::pair(picture.width, picture.height), std::pair(160, 120)) << stream.log();
    // The colour converter takes the decoder's full-range YUV for limited
    // range: the colours come out a little stretched.
    EXPECT_NEAR(picture.at(80, 60)[0], 200, 30);
    EXPECT_NEAR(picture.at(80, 60)[1], 120, 30);
    EXPECT_NEAR(picture.at(80, 60)[2], 40, 30);

    ASSERT_TRUE(sendText(stream.window, "quit", 1000));
    EXPECT_EQ(stream.process->waitExit(10000), 0);
    EXPECT_NE(stream.log().find("Media Foundation reads"), std::string::npos) << stream.log();
    std::error_code ec;
    fs::remove_all(avi.parent_path(), ec);
}

} // namespace
} // namespace vx::supervision
