// The autorun entry: a string value under the current user's Run key.
#include "platform/autorun.h"

#include "platform/win32/wide_text.h"

#include <windows.h>

#include <iostream>

namespace vx::platform {

namespace {
const wchar_t runKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
}

bool setAutorun(const std::string& name, const std::filesystem::path& path, bool enabled)
{
    HKEY key = nullptr;
    LONG status = ::RegOpenKeyExW(HKEY_CURRENT_USER, runKey, 0, KEY_SET_VALUE, &key);
    if (status != ERROR_SUCCESS) {
        std::cerr << "Failed to open registry key. Error: " << status << std::endl;
        return false;
    }
    const std::wstring valueName = win32::widen(name);
    if (enabled) {
        const std::wstring& text = path.native();
        status = ::RegSetValueExW(key, valueName.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                                  static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
        if (status != ERROR_SUCCESS)
            std::cerr << "Failed to set autorun. Error: " << status << std::endl;
    } else {
        status = ::RegDeleteValueW(key, valueName.c_str());
        if (status == ERROR_FILE_NOT_FOUND)
            status = ERROR_SUCCESS;
        if (status != ERROR_SUCCESS)
            std::cerr << "Failed to remove autorun. Error: " << status << std::endl;
    }
    ::RegCloseKey(key);
    return status == ERROR_SUCCESS;
}

std::filesystem::path autorunEntryPath(const std::string& name)
{
    return std::filesystem::path(L"HKEY_CURRENT_USER\\") / runKey / win32::widen(name);
}

} // namespace vx::platform
