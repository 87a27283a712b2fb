// The Win32 side of paths.h. The runtime folder is below the user's local
// application data folder (%LOCALAPPDATA%\Vexlane\runtime); the session's
// named objects themselves live in the system's namespace, so little goes
// there.
#include "platform/paths.h"

#include "platform/win32/wide_text.h"

#include <windows.h>
#include <shlobj.h>

namespace vx::platform {

const char pathSeparator = '\\';
const char* const executableSuffix = ".exe";

std::filesystem::path executablePath()
{
    std::wstring buffer(260, L'\0');
    for (;;) {
        const DWORD n = ::GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
        if (n == 0)
            return {};
        if (n < buffer.size()) {
            buffer.resize(n);
            return std::filesystem::path(buffer);
        }
        buffer.resize(buffer.size() * 2);
    }
}

std::filesystem::path folderOf(const std::filesystem::path& path)
{
    const std::wstring& text = path.native();
    const auto cut = text.find_last_of(L"\\/");
    return cut == std::wstring::npos ? std::filesystem::path() : std::filesystem::path(text.substr(0, cut));
}

bool setCurrentDirectory(const std::filesystem::path& folder)
{
    return ::SetCurrentDirectoryW(folder.c_str()) != 0;
}

namespace platform_detail {

// The user's local application data folder; empty when the system won't say.
std::filesystem::path localAppData()
{
    PWSTR folder = nullptr;
    std::filesystem::path result;
    if (SUCCEEDED(::SHGetKnownFolderPath(FOLDERID_LocalAppData, 0, nullptr, &folder)) && folder)
        result = folder;
    ::CoTaskMemFree(folder);
    if (result.empty()) {
        wchar_t buffer[MAX_PATH * 2];
        const DWORD n = ::GetEnvironmentVariableW(L"LOCALAPPDATA", buffer, MAX_PATH * 2);
        if (n > 0 && n < MAX_PATH * 2)
            result = buffer;
    }
    return result;
}

} // namespace platform_detail

std::filesystem::path runtimeDirectory()
{
    const auto base = platform_detail::localAppData();
    if (base.empty())
        return {};
    std::error_code ec;
    const auto folder = base / L"Vexlane" / L"runtime";
    std::filesystem::create_directories(folder, ec);
    return std::filesystem::is_directory(folder, ec) ? folder : std::filesystem::path();
}

bool fileExists(const std::filesystem::path& path)
{
    return ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool copyFileOverwrite(const std::filesystem::path& from, const std::filesystem::path& to,
                       std::string& error)
{
    if (::CopyFileW(from.c_str(), to.c_str(), FALSE))
        return true;
    error = win32::errorText(::GetLastError());
    return false;
}

} // namespace vx::platform
