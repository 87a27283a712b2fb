// The pictures' operations through OpenCV.
#include "imaging/picture_ops.h"
#include "imaging/picture_size.h"

#include <algorithm>

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace vx::imaging {

namespace {

// A matrix over the picture's own pixels.
cv::Mat matOf(const Picture& p)
{
    if (p.empty())
        return cv::Mat();
    return cv::Mat(p.height, p.width, CV_8UC(p.channels), p.data, p.stride);
}

// The matrix's pixels as a picture; the picture keeps the matrix alive.
Picture pictureOf(const cv::Mat& mat)
{
    if (mat.empty() || mat.depth() != CV_8U)
        return Picture();
    auto owner = std::make_shared<cv::Mat>(mat);
    Picture p;
    p.width = mat.cols;
    p.height = mat.rows;
    p.channels = mat.channels();
    p.stride = mat.step;
    p.data = owner->data;
    p.owner = owner;
    return p;
}

cv::Scalar scalarOf(const PictureColour& c) { return cv::Scalar(c.c0, c.c1, c.c2, c.c3); }

bool sameShape(const Picture& a, const Picture& b)
{
    return a.width == b.width && a.height == b.height && a.channels == b.channels;
}

} // namespace

Picture decodePicture(std::span<const std::uint8_t> bytes)
{
    if (bytes.empty())
        return Picture();
    try {
        const cv::Mat buffer(1, static_cast<int>(bytes.size()), CV_8UC1, const_cast<std::uint8_t*>(bytes.data()));
        return pictureOf(cv::imdecode(buffer, cv::IMREAD_COLOR));
    } catch (const cv::Exception&) {
        return Picture();
    }
}

Picture decodePictureFor(std::span<const std::uint8_t> bytes, int width, int height)
{
    int fullWidth = 0, fullHeight = 0;
    if (!jpegSize(bytes, fullWidth, fullHeight))
        return decodePicture(bytes);
    const int factor = reductionFor(fullWidth, fullHeight, width, height);
    if (factor == 1)
        return decodePicture(bytes);
    const int mode = factor == 2 ? cv::IMREAD_REDUCED_COLOR_2 : factor == 4 ? cv::IMREAD_REDUCED_COLOR_4
                                                                             : cv::IMREAD_REDUCED_COLOR_8;
    try {
        const cv::Mat buffer(1, static_cast<int>(bytes.size()), CV_8UC1, const_cast<std::uint8_t*>(bytes.data()));
        return pictureOf(cv::imdecode(buffer, mode));
    } catch (const cv::Exception&) {
        return Picture();
    }
}

std::vector<std::uint8_t> encodeJpeg(const Picture& picture, int quality)
{
    if (picture.empty())
        return {};
    Picture bgr = picture;
    if (picture.channels != 3) {
        bgr = makePicture(picture.width, picture.height, 3);
        convertInto(picture, bgr);
    }
    std::vector<std::uint8_t> bytes;
    try {
        if (!cv::imencode(".jpg", matOf(bgr), bytes, {cv::IMWRITE_JPEG_QUALITY, std::clamp(quality, 1, 100)}))
            return {};
    } catch (const cv::Exception&) {
        return {};
    }
    return bytes;
}

Picture readPictureFile(const std::filesystem::path& file)
{
    cv::Mat image;
    try {
        image = cv::imread(file.string(), cv::IMREAD_UNCHANGED);
        if (image.depth() == CV_16U)
            image.convertTo(image, CV_8U, 1.0 / 256.0);
        else if (!image.empty() && image.depth() != CV_8U)
            image.convertTo(image, CV_8U);
    } catch (const cv::Exception&) {
        return Picture();
    }
    return pictureOf(image);
}

Picture scaled(const Picture& source, int width, int height)
{
    if (source.empty() || width <= 0 || height <= 0)
        return Picture();
    cv::Mat out;
    cv::resize(matOf(source), out, cv::Size(width, height), 0, 0, cv::INTER_LINEAR);
    return pictureOf(out);
}

void convertInto(const Picture& source, Picture& target)
{
    if (source.empty() || target.empty() || source.width != target.width || source.height != target.height)
        return;
    const cv::Mat from = matOf(source);
    cv::Mat to = matOf(target);
    const int in = source.channels, out = target.channels;
    if (in == out)
        from.copyTo(to);
    else if (in == 3 && out == 4)
        cv::cvtColor(from, to, cv::COLOR_BGR2BGRA);
    else if (in == 4 && out == 3)
        cv::cvtColor(from, to, cv::COLOR_BGRA2BGR);
    else if (in == 1 && out == 4)
        cv::cvtColor(from, to, cv::COLOR_GRAY2BGRA);
    else if (in == 1 && out == 3)
        cv::cvtColor(from, to, cv::COLOR_GRAY2BGR);
}

void fill(Picture& picture, const PictureColour& colour)
{
    if (!picture.empty())
        matOf(picture).setTo(scalarOf(colour));
}

void drawRectangle(Picture& picture, const PictureRect& rect, const PictureColour& colour, int thickness)
{
    if (picture.empty())
        return;
    cv::Mat mat = matOf(picture);
    cv::rectangle(mat, cv::Rect(rect.x, rect.y, rect.width, rect.height), scalarOf(colour), thickness);
}

void drawLine(Picture& picture, int x0, int y0, int x1, int y1, const PictureColour& colour, int thickness)
{
    if (picture.empty())
        return;
    cv::Mat mat = matOf(picture);
    cv::line(mat, cv::Point(x0, y0), cv::Point(x1, y1), scalarOf(colour), thickness);
}

void multiply(Picture& picture, double factor)
{
    if (picture.empty())
        return;
    cv::Mat mat = matOf(picture);
    mat.convertTo(mat, -1, factor);
}

void addInto(Picture& target, const Picture& source)
{
    if (target.empty() || !sameShape(target, source))
        return;
    cv::Mat to = matOf(target);
    cv::add(to, matOf(source), to);
}

void blendInto(Picture& target, double targetWeight, const Picture& source, double sourceWeight)
{
    if (target.empty() || !sameShape(target, source))
        return;
    cv::Mat to = matOf(target);
    cv::addWeighted(to, targetWeight, matOf(source), sourceWeight, 0.0, to);
}

} // namespace vx::imaging
