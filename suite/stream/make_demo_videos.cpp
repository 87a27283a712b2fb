// Writes a few short videos with synthetic scenes: a road, a car-like box
// driving across with a plate on it. Small on purpose (320x240, 10 fps,
// a few seconds each, Motion-JPEG in AVI, which every OpenCV build reads).
// A size and a frame rate may follow the folder, for tools that run many
// streams at once: make_demo_videos <folder> 160 120 2.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <opencv2/imgproc.hpp>
#include <opencv2/videoio.hpp>

namespace {

struct Scene {
    const char* file;
    const char* plate;
    cv::Scalar body;
    int direction;   // 1 left to right, -1 right to left
};

// The scene is drawn at 320x240 and scaled to `written`.
bool writeScene(const std::filesystem::path& path, const Scene& scene, cv::Size written, double fps)
{
    const cv::Size size(320, 240);
    const int frames = 40;
    cv::VideoWriter writer(path.string(), cv::CAP_FFMPEG, cv::VideoWriter::fourcc('M', 'J', 'P', 'G'), fps, written);
    if (!writer.isOpened())
        return false;
    for (int i = 0; i < frames; ++i) {
        cv::Mat frame(size, CV_8UC3, cv::Scalar(90, 110, 90));
        cv::rectangle(frame, cv::Rect(0, 140, size.width, 100), cv::Scalar(70, 70, 70), cv::FILLED);
        for (int x = (i * 8) % 60 - 60; x < size.width; x += 60)
            cv::rectangle(frame, cv::Rect(x, 188, 30, 4), cv::Scalar(230, 230, 230), cv::FILLED);
        const int travel = size.width + 160;
        int left = (i * travel) / frames - 140;
        if (scene.direction < 0)
            left = size.width - 20 - left - 140;
        const cv::Rect body(left, 120, 140, 60);
        cv::rectangle(frame, body, scene.body, cv::FILLED);
        cv::rectangle(frame, cv::Rect(left + 25, 98, 90, 26), scene.body * 0.8, cv::FILLED);
        cv::circle(frame, {left + 30, 182}, 13, cv::Scalar(20, 20, 20), cv::FILLED);
        cv::circle(frame, {left + 110, 182}, 13, cv::Scalar(20, 20, 20), cv::FILLED);
        const cv::Rect plate(left + 35, 150, 70, 18);
        cv::rectangle(frame, plate, cv::Scalar(250, 250, 250), cv::FILLED);
        cv::rectangle(frame, plate, cv::Scalar(0, 0, 0), 1);
        cv::putText(frame, scene.plate, {plate.x + 3, plate.y + 14}, cv::FONT_HERSHEY_PLAIN, 0.9,
                    cv::Scalar(0, 0, 0), 1, cv::LINE_AA);
        if (written != size)
            cv::resize(frame, frame, written, 0, 0, cv::INTER_AREA);
        writer.write(frame);
    }
    return true;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 2 && argc != 5) {
        std::fprintf(stderr, "usage: make_demo_videos <folder> [width height fps]\n");
        return 2;
    }
    const cv::Size size = argc == 5 ? cv::Size(std::atoi(argv[2]), std::atoi(argv[3])) : cv::Size(320, 240);
    const double fps = argc == 5 ? std::atof(argv[4]) : 10.0;
    if (size.width < 16 || size.height < 16 || !(fps > 0.5 && fps <= 60)) {
        std::fprintf(stderr, "make_demo_videos: bad size or frame rate\n");
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::error_code ec;
    std::filesystem::create_directories(folder, ec);
    const Scene scenes[] = {
        {"gate_entry.avi", "A123BC77", cv::Scalar(40, 40, 200), 1},
        {"gate_exit.avi", "K456MH99", cv::Scalar(200, 120, 30), -1},
        {"parking.avi", "E789OP50", cv::Scalar(40, 160, 40), 1},
    };
    for (const Scene& scene : scenes) {
        if (!writeScene(folder / scene.file, scene, size, fps)) {
            std::fprintf(stderr, "make_demo_videos: can't write %s\n", scene.file);
            return 1;
        }
    }
    return 0;
}
