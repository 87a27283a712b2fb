// The real vxVideoStream recording a generated video, and the manager's
// quota beside it: the chunk being written stays, however small the limit,
// and goes once the stream has closed it.
#include <gtest/gtest.h>

#include <csignal>
#include <unistd.h>

#include "config/camera_config.h"
#include "config/text_codec.h"
#include "maintenance/video_archive.h"
#include "support/captured_stderr.h"
#include "support/child_process.h"
#include "support/installation.h"
#include "support/temp_dir.h"

namespace vx::supervision {
namespace {

namespace fs = std::filesystem;

// The chunk the stream has begun below `videos`. The writer may hold all it
// wrote until the chunk is closed, so the file can still be empty.
fs::path firstChunk(const fs::path& videos)
{
    std::error_code ec;
    for (fs::recursive_directory_iterator it(videos, ec), end; !ec && it != end; it.increment(ec))
        if (it->path().extension() == ".webm" && it->is_regular_file(ec))
            return it->path();
    return {};
}

TEST(RecordingQuota, TheChunkBeingRecordedSurvivesAPassWithLimitZero)
{
    test::RuntimeSandbox sandbox;
    test::TempDir root;
    const fs::path videos = root.path() / "videos";
    config::CameraConfig camera;
    camera.common.ID = 700000 + static_cast<std::int32_t>(::getpid() % 10000);
    camera.common.videoName = config::utf8ToCp1251("Запись " + std::to_string(camera.common.ID));
    camera.common.videoPath = std::string(VEXLANE_BIN_DIR) + "/demo_videos/gate_entry.avi";
    camera.common.writeVideo = true;
    camera.common.videoChunk = 600;
    const fs::path cameraFile = root.path() / "camera.json";
    config::saveCamera(cameraFile.string(), camera, 1234, 1235);

    auto stream = test::ChildProcess::start(fs::path(VEXLANE_BIN_DIR) / "vxVideoStream",
                                            {cameraFile.string(), videos.string(), (root.path() / "log.txt").string()});
    ASSERT_TRUE(stream);
    fs::path chunk;
    ASSERT_TRUE(test::waitFor([&] { return !(chunk = firstChunk(videos)).empty(); }, 20000))
        << test::readFileBytes(root.path() / "log.txt");
    // A finished file with a later name: the pass reaches the open chunk
    // first, whatever its size, and goes on to this one.
    const std::string id = std::to_string(camera.common.ID);
    const fs::path later = chunk.parent_path().parent_path() / "2100_12_31" /
                           ("video_stream_" + id + "_2100_12_31_23_59_59.webm");
    fs::create_directories(later.parent_path());
    test::writeFileBytes(later, std::string(1024, 'v'));

    {
        maintenance::VideoArchive archive(videos, 0);
        archive.enforceQuota();
        EXPECT_TRUE(fs::exists(chunk));
        EXPECT_FALSE(fs::exists(later));
    }
    stream->kill(SIGTERM);
    ASSERT_TRUE(stream->waitExit(20000));
    // Closed: a fresh archive takes it.
    maintenance::VideoArchive archive(videos, 0);
    archive.enforceQuota();
    EXPECT_FALSE(fs::exists(chunk));
    EXPECT_EQ(archive.totalBytes(), 0u);
}

} // namespace
} // namespace vx::supervision
