// On Windows the writer's open handle is the in-use mark: it is opened
// without FILE_SHARE_DELETE, so DeleteFileW refuses the file by itself.
#include "platform/file_delete.h"

#include <windows.h>

namespace vx::platform {

FileDeleteResult deleteFileUnlessInUse(const std::filesystem::path& path)
{
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD error = ::GetLastError();
        return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? FileDeleteResult::missing
                                                                              : FileDeleteResult::refused;
    }
    if (attributes & (FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY))
        return FileDeleteResult::refused;
    if (::DeleteFileW(path.c_str()))
        return FileDeleteResult::deleted;
    const DWORD error = ::GetLastError();
    return error == ERROR_FILE_NOT_FOUND ? FileDeleteResult::missing : FileDeleteResult::refused;
}

namespace {

class HandleMark : public FileInUseMark {
public:
    explicit HandleMark(HANDLE file) : file_(file) {}
    ~HandleMark() override { ::CloseHandle(file_); }
private:
    HANDLE file_;
};

} // namespace

std::unique_ptr<FileInUseMark> markFileInUse(const std::filesystem::path& path)
{
    HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return nullptr;
    return std::make_unique<HandleMark>(file);
}

} // namespace vx::platform
