#include "live_fixture.h"

#include "config/text_codec.h"
#include "imaging/picture_ops.h"

namespace vx::test {

imaging::Picture plainPicture(int width, int height, int channels, const imaging::PictureColour& colour)
{
    imaging::Picture picture = imaging::makePicture(width, height, channels);
    imaging::fill(picture, colour);
    return picture;
}

std::array<int, 3> pixelAt(const imaging::Picture& picture, int x, int y)
{
    const std::uint8_t* p = picture.at(x, y);
    return {p[0], p[1], p[2]};
}

int addSampleStream(core::StreamTable& table, int id)
{
    config::CameraCommon common;
    common.videoName = config::utf8ToCp1251("Камера " + std::to_string(id));
    std::int32_t given = id;
    table.addStream(common, config::CameraRecognition{}, config::CameraControl{}, given, true);
    return table.size() - 1;
}

std::string sourceImagesFolder()
{
    return std::string(VEXLANE_SOURCE_DIR) + "/images";
}

} // namespace vx::test
