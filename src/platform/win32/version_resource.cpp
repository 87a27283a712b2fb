#include "platform/version_resource.h"

#include <windows.h>

namespace vx::platform {

std::string programVersionText(const std::string&)
{
    HRSRC found = ::FindResourceW(nullptr, MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16));
    if (!found)
        return "Unknown version (FindResource failed)";
    HGLOBAL loaded = ::LoadResource(nullptr, found);
    if (!loaded)
        return "Unknown version (LoadResource failed)";
    void* block = ::LockResource(loaded);
    if (!block)
        return "Unknown version (LockResource failed)";
    VS_FIXEDFILEINFO* info = nullptr;
    UINT size = 0;
    if (!::VerQueryValueW(block, L"\\", reinterpret_cast<void**>(&info), &size) || !info ||
        size < sizeof(VS_FIXEDFILEINFO))
        return "Unknown version (VerQueryValue failed)";
    return std::to_string(HIWORD(info->dwFileVersionMS)) + "." + std::to_string(LOWORD(info->dwFileVersionMS)) +
           "." + std::to_string(HIWORD(info->dwFileVersionLS)) + "." + std::to_string(LOWORD(info->dwFileVersionLS));
}

} // namespace vx::platform
