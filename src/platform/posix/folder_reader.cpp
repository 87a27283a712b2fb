#include "platform/folder_reader.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace vx::platform {

struct FolderReader::State {
    DIR* dir = nullptr;
    std::string lastName;
};

FolderReader::FolderReader(const std::filesystem::path& folder) : folder_(folder), state_(std::make_unique<State>())
{
    state_->dir = ::opendir(folder.c_str());
}

FolderReader::~FolderReader()
{
    if (state_->dir)
        ::closedir(state_->dir);
}

bool FolderReader::isOpen() const { return state_->dir != nullptr; }

namespace {

EntryKind kindOf(mode_t mode)
{
    if (S_ISREG(mode))
        return EntryKind::file;
    if (S_ISDIR(mode))
        return EntryKind::folder;
    return EntryKind::other;
}

} // namespace

bool FolderReader::next(FolderEntry& entry)
{
    if (!state_->dir)
        return false;
    while (const dirent* found = ::readdir(state_->dir)) {
        const std::string_view name(found->d_name);
        if (name == "." || name == "..")
            continue;
        entry.name.assign(name);
        switch (found->d_type) {
        case DT_REG: entry.kind = EntryKind::file; break;
        case DT_DIR: entry.kind = EntryKind::folder; break;
        case DT_UNKNOWN: {
            // Some file systems leave the type out of the listing.
            struct stat status {};
            entry.kind = ::fstatat(::dirfd(state_->dir), found->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0
                             ? kindOf(status.st_mode)
                             : EntryKind::other;
            break;
        }
        default: entry.kind = EntryKind::other; break;
        }
        state_->lastName = entry.name;
        return true;
    }
    return false;
}

bool FolderReader::sizeOfLast(std::uint64_t& size)
{
    struct stat status {};
    if (!state_->dir ||
        ::fstatat(::dirfd(state_->dir), state_->lastName.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISREG(status.st_mode))
        return false;
    size = static_cast<std::uint64_t>(status.st_size);
    return true;
}

std::filesystem::path FolderReader::pathOf(const FolderEntry& entry) const { return folder_ / entry.name; }

} // namespace vx::platform
