#include "liveview/overlay.h"

#include "config/text_codec.h"
#include "imaging/picture_ops.h"
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

// A button picture as the tile takes it: four channels. The files are read
// with their own channels, and a file of another kind would make the
// addition fail; such a picture is converted first.
imaging::Picture asTilePixels(const imaging::Picture& picture)
{
    if (picture.channels == 4)
        return picture;
    if (picture.channels != 3 && picture.channels != 1)
        return imaging::Picture();
    imaging::Picture out = imaging::makePicture(picture.width, picture.height, 4);
    imaging::convertInto(picture, out);
    return out;
}

void addButton(imaging::Picture& tile, const imaging::Picture& picture, int x, int y, int side, bool hovered)
{
    if (picture.empty())
        return;
    const imaging::PictureRect place{x, y, side, side};
    imaging::Picture target = imaging::region(tile, place);
    if (target.empty())
        return;
    imaging::Picture resized = imaging::scaled(asTilePixels(picture), side, side);
    if (resized.empty())
        return;
    if (hovered)
        imaging::multiply(resized, 2.0);
    imaging::addInto(target, resized);
}

struct ButtonLook {
    imaging::PictureColour blend;
    TextColour text;
    TextColour shadow;
    int dx, dy;
};

const ButtonLook buttonLooks[4] = {
    {{120, 80, 0, 255}, 0xFFFFFF, 0x785000, 0, 0},
    {{180, 120, 0, 255}, 0xF0F0F0, 0xB47800, 1, 1},
    {{0, 80, 120, 255}, 0xFFFFFF, 0x785000, 0, 0},
    {{0, 120, 180, 255}, 0xFFFFFF, 0x785000, 0, 0},
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

void drawSmallButtons(imaging::Picture& tile, const std::vector<imaging::Picture>& images,
                      const core::CameraRuntime& record, int hoveredButton)
{
    const int size = tile.width;
    const int b = smallButtonSide(size);
    if (b < 4)
        return;
    auto picture = [&images](int which) -> const imaging::Picture& {
        static const imaging::Picture none;
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

void drawTextButton(imaging::Picture& tile, const TileRect& rect, const std::string& text, int fontSize, int state)
{
    if (state < 0 || state > 3 || rect.width <= 0 || rect.height <= 0)
        return;
    imaging::Picture target = imaging::region(tile, {rect.x, rect.y, rect.width, rect.height});
    if (target.empty())
        return;
    const ButtonLook& look = buttonLooks[state];
    imaging::Picture button = imaging::makePicture(rect.width, rect.height, tile.channels);
    imaging::fill(button, look.blend);
    drawText(button, fontName, fontSize, text, look.dx, fontSize / 2 + look.dy, look.text, look.shadow, textCenter);
    imaging::blendInto(target, 0.3, button, 0.7);
}

void drawLargeButtons(imaging::Picture& tile, const core::CameraRuntime& record, int hoveredButton)
{
    const int size = tile.width;
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

void drawTileTexts(imaging::Picture& tile, const core::CameraRuntime& record, bool connected)
{
    const int size = tile.width;
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
