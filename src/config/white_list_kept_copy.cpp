#include "config/white_list_kept_copy.h"

#include "config/config_file.h"
#include "maintenance/local_time.h"
#include "platform/paths.h"

namespace vx::config {

std::string copyTimeStamp(std::time_t time) {
    return maintenance::formatLocalTime(time, "%Y%m%d_%H%M%S");
}

std::string freeKeptCopyPath(const std::string& path, const std::string& suffix, std::time_t time) {
    const std::string stem = path + '.' + copyTimeStamp(time);
    std::string candidate = stem + suffix;
    for (int n = 2; platform::fileExists(toNativePath(candidate)); ++n)
        candidate = stem + '_' + std::to_string(n) + suffix;
    return candidate;
}

std::optional<std::string> keepCopyOf(const std::string& path, const std::string& suffix,
                                      std::time_t time) {
    const std::string copy = freeKeptCopyPath(path, suffix, time);
    std::string error;
    if (!platform::copyFileOverwrite(toNativePath(path), toNativePath(copy), error)) return std::nullopt;
    return copy;
}

} // namespace vx::config
