#include "platform/folder_reader.h"

#include <windows.h>

#include "platform/win32/wide_text.h"

namespace vx::platform {

// The listing carries each file's size: the reader keeps the entry it gave
// last, and the size is read from it.
struct FolderReader::State {
    HANDLE find = INVALID_HANDLE_VALUE;
    WIN32_FIND_DATAW data{};
    bool pending = false;   // `data` holds an entry `next` has not given yet
    std::uint64_t lastSize = 0;
    bool lastIsFile = false;
};

FolderReader::FolderReader(const std::filesystem::path& folder) : folder_(folder), state_(std::make_unique<State>())
{
    const std::wstring pattern = (folder / L"*").wstring();
    state_->find = ::FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &state_->data, FindExSearchNameMatch,
                                      nullptr, FIND_FIRST_EX_LARGE_FETCH);
    state_->pending = state_->find != INVALID_HANDLE_VALUE;
}

FolderReader::~FolderReader()
{
    if (state_->find != INVALID_HANDLE_VALUE)
        ::FindClose(state_->find);
}

bool FolderReader::isOpen() const { return state_->find != INVALID_HANDLE_VALUE; }

bool FolderReader::next(FolderEntry& entry)
{
    if (state_->find == INVALID_HANDLE_VALUE)
        return false;
    for (;;) {
        if (!state_->pending && !::FindNextFileW(state_->find, &state_->data))
            return false;
        state_->pending = false;
        const std::wstring_view name(state_->data.cFileName);
        if (name == L"." || name == L"..")
            continue;
        const DWORD attributes = state_->data.dwFileAttributes;
        // A link or junction is a reparse point, whatever it points at.
        if (attributes & FILE_ATTRIBUTE_REPARSE_POINT)
            entry.kind = EntryKind::other;
        else if (attributes & FILE_ATTRIBUTE_DIRECTORY)
            entry.kind = EntryKind::folder;
        else
            entry.kind = EntryKind::file;
        entry.name = win32::narrow(std::wstring(name));
        state_->lastIsFile = entry.kind == EntryKind::file;
        state_->lastSize =
            (static_cast<std::uint64_t>(state_->data.nFileSizeHigh) << 32) | state_->data.nFileSizeLow;
        return true;
    }
}

bool FolderReader::sizeOfLast(std::uint64_t& size)
{
    if (!state_->lastIsFile)
        return false;
    size = state_->lastSize;
    return true;
}

std::filesystem::path FolderReader::pathOf(const FolderEntry& entry) const
{
    return folder_ / win32::widen(entry.name);
}

} // namespace vx::platform
