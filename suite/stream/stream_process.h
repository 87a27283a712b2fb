#pragma once
// vxVideoStream: one stream of the suite. Started by the manager as
//   vxVideoStream "<configs>/vx_stream<id>.json" "<videoPath>" "<log file>"
// it reads its camera file, opens the camera's videoPath, registers its
// window under the camera's videoName and answers the manager's commands:
//   "getimage W H <manager window>"  the newest frame as JPEG at W x H into
//        its picture block, then a notification to that window whose cbData
//        is the stream's ID; the block isn't touched again until that send
//        has returned. While a link's next frame is awaited, the answer
//        waits for it (at most 0.3 s, then the frame kept before goes)
//   "hidevideo true|false", "hideconsole true|false"  remembered
//   "quit"  ends the process, exit code 0
// A picture request is answered only while the source has a frame: once a
// link is lost, the requests go unanswered. A lost link that is not to be
// reconnected (or has used up its attempts) ends the process with exit code
// sourceLostExitCode, for the manager's watch to start it again.
// Test switch: VX_STREAM_TEST_IGNORE_QUIT=1 makes it ignore "quit".
namespace vx::stream {

inline constexpr int sourceLostExitCode = 3;

int runStream(int argc, char* argv[]);

} // namespace vx::stream
