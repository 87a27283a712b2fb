// Shared blocks are the system's named file mappings backed by the paging
// file. A view of a block stays valid for as long as it is open, and a block
// lives while any process holds it, so a restarted stream joins the block the
// manager still holds: the name always leads to the viewed block.
#include "platform/shared_block.h"

#include "platform/win32/wide_text.h"

#include <windows.h>

namespace vx::platform {

namespace {

class MappedBlock : public WritableSharedBlock {
public:
    MappedBlock(HANDLE mapping, void* view, std::size_t size) : mapping_(mapping), view_(view), size_(size) {}
    ~MappedBlock() override
    {
        ::UnmapViewOfFile(view_);
        ::CloseHandle(mapping_);
    }
    const char* data() const override { return static_cast<const char*>(view_); }
    char* writableData() override { return static_cast<char*>(view_); }
    std::size_t size() const override { return size_; }
private:
    HANDLE mapping_;
    void* view_;
    std::size_t size_;
};

// The view when at least `size` bytes of it can be read, else null (and the
// view is undone).
void* mapAtLeast(HANDLE mapping, DWORD access, std::size_t size)
{
    void* view = ::MapViewOfFile(mapping, access, 0, 0, size);
    if (!view)
        return nullptr;
    MEMORY_BASIC_INFORMATION info{};
    if (::VirtualQuery(view, &info, sizeof info) == 0 || info.RegionSize < size) {
        ::UnmapViewOfFile(view);
        return nullptr;
    }
    return view;
}

} // namespace

std::shared_ptr<SharedBlock> openSharedBlock(const std::string& name, std::size_t size)
{
    HANDLE mapping = ::OpenFileMappingW(FILE_MAP_READ, FALSE, win32::widen(name).c_str());
    if (!mapping)
        return nullptr;
    void* view = mapAtLeast(mapping, FILE_MAP_READ, size);
    if (!view) {
        ::CloseHandle(mapping);
        return nullptr;
    }
    return std::make_shared<MappedBlock>(mapping, view, size);
}

std::unique_ptr<WritableSharedBlock> createSharedBlock(const std::string& name, std::size_t size)
{
    const unsigned long long wide = size;
    HANDLE mapping = ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE,
                                          static_cast<DWORD>(wide >> 32), static_cast<DWORD>(wide),
                                          win32::widen(name).c_str());
    if (!mapping)
        return nullptr;
    void* view = mapAtLeast(mapping, FILE_MAP_ALL_ACCESS, size);
    if (!view) {
        ::CloseHandle(mapping);
        return nullptr;
    }
    return std::make_unique<MappedBlock>(mapping, view, size);
}

} // namespace vx::platform
