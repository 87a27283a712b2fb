// Shared blocks on POSIX: shm_open objects. Like a named file mapping, a
// block is shared by everyone who creates it under the same name and lives
// by name as long as one of its creators does: each creator holds a shared
// flock on it, and the last one to go (the one that can take the lock
// exclusively) removes the name. So a second stream process started under
// the same identifier neither steals the first one's block nor takes it away
// when it ends. A view the manager still holds stays valid until it unmaps it.
#include "platform/shared_block.h"

#include "platform/posix/unique_fd.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vx::platform {
namespace {

std::string objectName(const std::string& name)
{
    return "/" + name;
}

class PosixSharedBlock : public WritableSharedBlock {
public:
    PosixSharedBlock(void* view, std::size_t size, std::string unlinkName, std::string openedName = {},
                     const struct stat* opened = nullptr)
        : view_(view), size_(size), unlinkName_(std::move(unlinkName)), openedName_(std::move(openedName))
    {
        if (opened) {
            device_ = opened->st_dev;
            inode_ = opened->st_ino;
        }
    }
    bool current() const override
    {
        if (openedName_.empty())
            return true;
        posix::UniqueFd fd(::shm_open(openedName_.c_str(), O_RDONLY | O_CLOEXEC, 0));
        struct stat info {};
        return fd.valid() && ::fstat(fd.get(), &info) == 0 && info.st_dev == device_ && info.st_ino == inode_;
    }
    ~PosixSharedBlock() override
    {
        ::munmap(view_, size_);
        if (!unlinkName_.empty() && creator_.valid() && ::flock(creator_.get(), LOCK_EX | LOCK_NB) == 0)
            ::shm_unlink(unlinkName_.c_str());
    }
    // The creator's descriptor, holding its shared lock for the block's life.
    void keepCreator(posix::UniqueFd fd) { creator_ = std::move(fd); }
    const char* data() const override { return static_cast<const char*>(view_); }
    std::size_t size() const override { return size_; }
    char* writableData() override { return static_cast<char*>(view_); }

private:
    void* view_;
    std::size_t size_;
    std::string unlinkName_;
    std::string openedName_;   // an opener's name, to tell a block made anew under it
    dev_t device_ = 0;
    ino_t inode_ = 0;
    posix::UniqueFd creator_;
};

} // namespace

std::shared_ptr<SharedBlock> openSharedBlock(const std::string& name, std::size_t size)
{
    if (size == 0)
        return nullptr;
    posix::UniqueFd fd(::shm_open(objectName(name).c_str(), O_RDONLY | O_CLOEXEC, 0));
    if (!fd.valid())
        return nullptr;
    struct stat info {};
    if (::fstat(fd.get(), &info) != 0 || info.st_size < 0 || static_cast<std::size_t>(info.st_size) < size)
        return nullptr;
    void* view = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, fd.get(), 0);
    if (view == MAP_FAILED)
        return nullptr;
    return std::make_shared<PosixSharedBlock>(view, size, std::string(), objectName(name), &info);
}

std::unique_ptr<WritableSharedBlock> createSharedBlock(const std::string& name, std::size_t size)
{
    if (size == 0)
        return nullptr;
    const std::string object = objectName(name);
    posix::UniqueFd fd(::shm_open(object.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!fd.valid())
        return nullptr;
    if (::flock(fd.get(), LOCK_SH) != 0)
        return nullptr;
    struct stat info {};
    if (::fstat(fd.get(), &info) != 0)
        return nullptr;
    // A block left by a creator that was killed is taken over; one that is
    // too short is made long enough.
    if (static_cast<std::size_t>(info.st_size) < size && ::ftruncate(fd.get(), static_cast<off_t>(size)) != 0)
        return nullptr;
    void* view = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd.get(), 0);
    if (view == MAP_FAILED)
        return nullptr;
    auto block = std::make_unique<PosixSharedBlock>(view, size, object);
    block->keepCreator(std::move(fd));
    return block;
}

} // namespace vx::platform
