#include "core/save_failure.h"

#include "config/text_codec.h"
#include "maintenance/system_log.h"

namespace vx::core {

bool noteSave(bool saved, const std::string& fileName)
{
    if (!saved)
        VX_LOG(maintenance::logError, fileName + " was not saved");
    return saved;
}

std::string saveFailedText(const std::string& fileName)
{
    return config::utf8ToCp1251("Не удалось сохранить файл ") + fileName + "!";
}

} // namespace vx::core
