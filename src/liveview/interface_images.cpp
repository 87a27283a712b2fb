#include "liveview/interface_images.h"

#include "config/text_codec.h"
#include "imaging/picture_ops.h"

namespace vx::liveview {

const std::array<const char*, 12> buttonImageFiles = {
    "runstatus.png",      "runstatusoff.png",   "brun.png",           "bstop.png",
    "bsvideo.png",        "bsrecog.png",        "bsdirect.png",       "bsdelete.png",
    "bsshowwindowon.png", "bsshowwindowoff.png", "bsshowconsoleon.png", "bsshowconsoloff.png",
};

std::vector<imaging::Picture> loadButtonImages(const std::filesystem::path& folder, bool& allFound)
{
    allFound = true;
    std::vector<imaging::Picture> images;
    for (const char* file : buttonImageFiles) {
        const imaging::Picture image = imaging::readPictureFile(folder / file);
        if (image.empty())
            allFound = false;
        images.push_back(image);
    }
    return images;
}

std::string missingImagesText()
{
    return config::utf8ToCp1251("Одно или несколько изображений, используемых в интерфейсе, не найдены!");
}

bool loadInterfaceImages(LiveView& view, const std::filesystem::path& folder, core::StatusText& status)
{
    bool allFound = true;
    view.buttonImages = loadButtonImages(folder, allFound);
    if (!allFound)
        status.set(missingImagesText());
    return allFound;
}

} // namespace vx::liveview
