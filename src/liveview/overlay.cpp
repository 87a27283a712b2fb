#include "liveview/overlay.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "config/text_codec.h"
#include "liveview/interface_images.h"
#include "liveview/text_renderer.h"

namespace vx::liveview {

namespace {

const char* const fontName = "arial";

const std::string& noConnectionText()
{
    static const std::string text = config::utf8ToCp1251("Нет соединения");
    return text;
}

const std::string& openText()
{
    static const std::string text = config::utf8ToCp1251("Открыть");
    return text;
}

const std::string& closeText()
{
    static const std::string text = config::utf8ToCp1251("Закрыть");
    return text;
}

// A button picture as the tile takes it: eight bits, four channels. The
// files are read unchanged, and a file of another kind would make the
// addition fail; such a picture is converted first.
cv::Mat asTilePixels(const cv::Mat& picture)
{
    cv::Mat eightBit = picture;
    if (picture.depth() == CV_16U)
        picture.convertTo(eightBit, CV_8U, 1.0 / 256.0);
    else if (picture.depth() != CV_8U)
        picture.convertTo(eightBit, CV_8U);
    switch (eightBit.channels()) {
    case 4:
        return eightBit;
    case 3: {
        cv::Mat out;
        cv::cvtColor(eightBit, out, cv::COLOR_BGR2BGRA);
        return out;
    }
    case 1: {
        cv::Mat out;
        cv::cvtColor(eightBit, out, cv::COLOR_GRAY2BGRA);
        return out;
    }
    default:
        return cv::Mat();
    }
}

void addButton(cv::Mat& tile, const cv::Mat& picture, int x, int y, int side, bool hovered)
{
    if (picture.empty())
        return;
    const cv::Rect place(x, y, side, side);
    if ((place & cv::Rect(0, 0, tile.cols, tile.rows)) != place)
        return;
    cv::Mat resized;
    cv::resize(asTilePixels(picture), resized, cv::Size(side, side), 0, 0, cv::INTER_LINEAR);
    if (resized.empty())
        return;
    if (hovered)
        resized.convertTo(resized, -1, 2.0);
    cv::Mat region = tile(place);
    cv::add(region, resized, region);
}

struct ButtonLook {
    cv::Scalar blend;
    TextColour text;
    TextColour shadow;
    int dx, dy;
};

const ButtonLook buttonLooks[4] = {
    {cv::Scalar(120, 80, 0), 0xFFFFFF, 0x785000, 0, 0},
    {cv::Scalar(180, 120, 0), 0xF0F0F0, 0xB47800, 1, 1},
    {cv::Scalar(0, 80, 120), 0xFFFFFF, 0x785000, 0, 0},
    {cv::Scalar(0, 120, 180), 0xFFFFFF, 0x785000, 0, 0},
};

} // namespace

int buttonInTile(int tile, int x, int y, bool offersOpen, bool offersClose)
{
    const int b = smallButtonSide(tile);
    if (b < 4)
        return noButton;
    if (x > 0 && x < b && y > tile - b && y < tile)
        return buttonStartStop;
    for (int i = 1; i <= 4; ++i)
        if (x > tile - i * b && x < tile + (1 - i) * b && y > tile - b && y < tile)
            return i;
    if (x > tile - b && x < tile && y > 0 && y < b)
        return buttonPlanned;
    if (x > tile - b && x < tile && y > tile - 2 * b && y < tile - b)
        return buttonShowWindow;
    const bool insideX = x > 0.2 * tile && x < 0.8 * tile;
    if (offersOpen && insideX && y > 0.25 * tile && y < 0.4 * tile)
        return buttonOpen;
    if (offersClose && insideX && y > 0.6 * tile && y < 0.75 * tile)
        return buttonClose;
    return noButton;
}

int buttonAt(const TileGrid& grid, const std::vector<core::CameraRuntime>& records, int index, int x, int y)
{
    if (index < 0 || index >= static_cast<int>(grid.tileRects.size()) || index >= static_cast<int>(records.size()))
        return noButton;
    const TileRect& rect = grid.tileRects[static_cast<std::size_t>(index)];
    const core::CameraRuntime& record = records[static_cast<std::size_t>(index)];
    return buttonInTile(rect.width, x - rect.x, y - rect.y, record.control.buttonOpen, record.control.buttonClose);
}

void drawSmallButtons(cv::Mat& tile, const std::vector<cv::Mat>& images, const core::CameraRuntime& record,
                      int hoveredButton)
{
    const int size = tile.cols;
    const int b = smallButtonSide(size);
    if (b < 4)
        return;
    auto picture = [&images](int which) -> const cv::Mat& {
        static const cv::Mat none;
        return which < static_cast<int>(images.size()) ? images[static_cast<std::size_t>(which)] : none;
    };
    struct Place {
        int number, x, y, image;
    };
    const Place places[] = {
        {buttonStartStop, 0, size - b, record.running ? imageStop : imageRun},
        {buttonSettings, size - b, size - b, imageVideo},
        {buttonRecognition, size - 2 * b, size - b, imageRecognition},
        {buttonSignals, size - 3 * b, size - b, imageDirect},
        {buttonDelete, size - 4 * b, size - b, imageDelete},
        {buttonPlanned, size - b, 0, record.planned ? imageRunStatus : imageRunStatusOff},
        {buttonShowWindow, size - b, size - 2 * b,
         record.config.unShowVideo ? imageShowWindowOff : imageShowWindowOn},
    };
    for (const Place& p : places)
        addButton(tile, picture(p.image), p.x, p.y, b, hoveredButton == p.number);
}

void drawTextButton(cv::Mat& tile, const TileRect& rect, const std::string& text, int fontSize, int state)
{
    if (state < 0 || state > 3 || rect.width <= 0 || rect.height <= 0)
        return;
    const cv::Rect place(rect.x, rect.y, rect.width, rect.height);
    if ((place & cv::Rect(0, 0, tile.cols, tile.rows)) != place)
        return;
    const ButtonLook& look = buttonLooks[state];
    cv::Mat button(rect.height, rect.width, tile.type());
    button.setTo(cv::Scalar(look.blend[0], look.blend[1], look.blend[2], 255));
    drawText(button, fontName, fontSize, text, look.dx, fontSize / 2 + look.dy, look.text, look.shadow, textCenter);
    cv::Mat region = tile(place);
    cv::addWeighted(region, 0.3, button, 0.7, 0.0, region);
}

void drawLargeButtons(cv::Mat& tile, const core::CameraRuntime& record, int hoveredButton)
{
    const int size = tile.cols;
    const int width = static_cast<int>(size * 0.6 * 0.25) * 4;
    const int height = static_cast<int>(size * 0.15);
    const int x = static_cast<int>(size * 0.2);
    const int fs = titleFontSize(size);
    if (record.control.buttonOpen)
        drawTextButton(tile, {x, static_cast<int>(size * 0.25), width, height}, openText(), fs,
                       hoveredButton == buttonOpen ? 1 : 0);
    if (record.control.buttonClose)
        drawTextButton(tile, {x, static_cast<int>(size * 0.6), width, height}, closeText(), fs,
                       hoveredButton == buttonClose ? 3 : 2);
}

void drawTileTexts(cv::Mat& tile, const core::CameraRuntime& record, bool connected)
{
    const int size = tile.cols;
    const int fs = titleFontSize(size);
    const std::string title = "ID:" + std::to_string(record.id) + "\r\n" + record.config.videoName;
    drawText(tile, fontName, fs, title, 10, 10, 0xFFFFFF, 0x646464, textWordBreak);
    if (!connected) {
        const int big = static_cast<int>(fs * 1.5);
        drawText(tile, fontName, big, noConnectionText(), 0, size / 2 - big / 2, 0xFFFFFF, 0x646464,
                 textWordBreak | textCenter);
    }
}

} // namespace vx::liveview
