#include "platform/file_replace.h"

#include "platform/win32/wide_text.h"

#include <windows.h>

namespace vx::platform {

bool writeWholeFile(const std::filesystem::path& path, const std::string& bytes, std::string& error)
{
    HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        error = win32::errorText(::GetLastError());
        return false;
    }
    std::size_t done = 0;
    bool ok = true;
    while (ok && done < bytes.size()) {
        const DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, 1u << 20));
        DWORD written = 0;
        ok = ::WriteFile(file, bytes.data() + done, chunk, &written, nullptr) && written > 0;
        done += written;
    }
    if (ok)
        ok = ::FlushFileBuffers(file) != 0;
    if (!ok)
        error = win32::errorText(::GetLastError());
    ::CloseHandle(file);
    return ok;
}

bool replaceFile(const std::filesystem::path& from, const std::filesystem::path& to, std::string& error)
{
    if (::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return true;
    error = win32::errorText(::GetLastError());
    return false;
}

void removeFileQuietly(const std::filesystem::path& path)
{
    ::DeleteFileW(path.c_str());
}

} // namespace vx::platform
