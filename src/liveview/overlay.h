#pragma once
// What lies over a tile: seven small picture buttons, the two large text
// buttons "Открыть" and "Закрыть", the title and the state text; and the hit
// test of those buttons.
#include <string>
#include <vector>

#include "imaging/picture.h"
#include "state/camera_runtime.h"
#include "liveview/tile_grid.h"

namespace vx::liveview {

// The numbers buttonAt gives; the click handling switches on them.
enum TileButton : int {
    noButton = -1,
    buttonStartStop = 0,
    buttonSettings = 1,
    buttonRecognition = 2,
    buttonSignals = 3,
    buttonDelete = 4,
    buttonPlanned = 5,
    buttonShowWindow = 6,
    buttonOpen = 100,
    buttonClose = 101,
};

// The side of a small button: an eighth of the tile in steps of 4. Below 4
// a tile has no buttons at all.
inline int smallButtonSide(int tile) { return tile / 32 * 4; }

// The button under a point relative to a tile of side `tile`; every edge is
// outside. The large buttons count only when the stream offers them.
int buttonInTile(int tile, int x, int y, bool offersOpen, bool offersClose);

// The button of the tile at `index` under the zone point x, y.
int buttonAt(const TileGrid& grid, const std::vector<core::CameraRuntime>& records, int index, int x, int y);

// Adds the seven small buttons onto a four-channel tile. `hoveredButton` is
// the button under the mouse when the mouse is over this tile, else -1.
void drawSmallButtons(imaging::Picture& tile, const std::vector<imaging::Picture>& images, const core::CameraRuntime& record,
                      int hoveredButton);

// One large button in `rect` of a tile (three or four channels), blended at 70%.
// `state`: 0 open, 1 open hovered, 2 close, 3 close hovered.
void drawTextButton(imaging::Picture& tile, const TileRect& rect, const std::string& text, int fontSize, int state);

// The large buttons the stream offers.
void drawLargeButtons(imaging::Picture& tile, const core::CameraRuntime& record, int hoveredButton);

// The font size of the title: max(10, tile / 15).
inline int titleFontSize(int tile) { return tile / 15 > 10 ? tile / 15 : 10; }

// "ID:<id>" CR LF <name>, and "Нет соединения" when `connected` is false.
void drawTileTexts(imaging::Picture& tile, const core::CameraRuntime& record, bool connected);

} // namespace vx::liveview
