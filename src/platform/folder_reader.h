#pragma once
// One folder's entries, read straight from the system, and each file's size
// asked relative to the open folder (or, where the listing carries it, taken
// from the listing): a walk over a large tree pays one call per file, not a
// path look-up from the root for each.
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace vx::platform {

// A link of any kind (and anything else that is neither) is `other`: the
// walks that use this never follow one.
enum class EntryKind { file, folder, other };

struct FolderEntry {
    std::string name;   // UTF-8, without "." and ".."
    EntryKind kind = EntryKind::other;
};

class FolderReader {
public:
    // Opens `folder`; a folder that can't be read gives no entries.
    explicit FolderReader(const std::filesystem::path& folder);
    ~FolderReader();
    FolderReader(const FolderReader&) = delete;
    FolderReader& operator=(const FolderReader&) = delete;

    bool isOpen() const;
    // The next entry; false at the end, or when the folder can't be read on.
    bool next(FolderEntry& entry);
    // The size of the file `next` gave last; false when it is gone since.
    bool sizeOfLast(std::uint64_t& size);
    // The path of an entry of this folder.
    std::filesystem::path pathOf(const FolderEntry& entry) const;

private:
    struct State;
    std::filesystem::path folder_;
    std::unique_ptr<State> state_;
};

} // namespace vx::platform
