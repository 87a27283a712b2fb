// The POSIX side of named_lock.h.
//
// flock belongs to an open file description, not to a thread, and two
// descriptors of one process opened separately exclude each other. So every
// lock file is opened once per process and shared through a registry keyed by
// the file's full path; each entry pairs the descriptor with a recursive
// mutex. The mutex gives ownership per thread and recursion; the flock is
// taken when the owning thread's depth goes from 0 to 1 and dropped when it
// returns to 0. The descriptor is opened with O_CLOEXEC: a child started
// while the lock is held must not inherit (and so keep) it.
#include "platform/named_lock.h"

#include "platform/paths.h"
#include "platform/posix/unique_fd.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <atomic>
#include <map>
#include <mutex>
#include <thread>

namespace vx::platform {
namespace {

using posix::UniqueFd;

struct LockEntry {
    std::string path;
    std::recursive_mutex mutex;
    // Touched only by the thread that holds `mutex`.
    UniqueFd fd;
    int depth = 0;
    // Read by other threads to refuse an unlock from a non-owner.
    std::atomic<std::thread::id> owner{};
};

std::mutex registryMutex;
std::map<std::string, std::weak_ptr<LockEntry>> registry;

std::shared_ptr<LockEntry> entryFor(const std::string& path)
{
    std::lock_guard guard(registryMutex);
    auto& slot = registry[path];
    if (auto entry = slot.lock())
        return entry;
    UniqueFd fd(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!fd.valid()) {
        registry.erase(path);
        return nullptr;
    }
    auto entry = std::make_shared<LockEntry>();
    entry->path = path;
    entry->fd = std::move(fd);
    slot = entry;
    return entry;
}

bool sameFile(int fd, const std::string& path)
{
    struct stat a {}, b {};
    return ::fstat(fd, &a) == 0 && ::stat(path.c_str(), &b) == 0 && a.st_dev == b.st_dev
        && a.st_ino == b.st_ino;
}

// Takes the flock for the entry; the caller holds entry.mutex at depth 0.
// Should the file have been removed and made anew while we waited, the lock
// we got is on a file nobody else opens any more: open the new one and retry.
bool takeFileLock(LockEntry& entry, bool wait)
{
    for (int attempt = 0; attempt < 8; ++attempt) {
        if (!entry.fd.valid())
            entry.fd.reset(::open(entry.path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
        if (!entry.fd.valid())
            return false;
        int rc;
        do {
            rc = ::flock(entry.fd.get(), LOCK_EX | (wait ? 0 : LOCK_NB));
        } while (rc != 0 && errno == EINTR);
        if (rc != 0)
            return false;
        if (sameFile(entry.fd.get(), entry.path))
            return true;
        entry.fd.reset();
    }
    return false;
}

class PosixNamedLock final : public NamedLock {
public:
    PosixNamedLock(std::string name, std::shared_ptr<LockEntry> entry)
        : name_(std::move(name)), entry_(std::move(entry)) {}

    // What this object still holds is given back; like every unlock, that
    // has to happen on the holding thread.
    ~PosixNamedLock() override
    {
        while (held_ > 0 && entry_->owner.load() == std::this_thread::get_id())
            unlock();
    }

    bool lock() override
    {
        entry_->mutex.lock();
        return enter(true);
    }

    bool tryLock() override
    {
        if (!entry_->mutex.try_lock())
            return false;
        return enter(false);
    }

    void unlock() override
    {
        LockEntry& e = *entry_;
        if (e.owner.load() != std::this_thread::get_id() || e.depth == 0)
            return;   // not ours to give back
        if (--e.depth == 0) {
            e.owner.store(std::thread::id());
            ::flock(e.fd.get(), LOCK_UN);
        }
        if (held_ > 0)
            --held_;
        e.mutex.unlock();
    }

    const std::string& name() const override { return name_; }

private:
    // Called with entry_->mutex held once more by this thread.
    bool enter(bool wait)
    {
        LockEntry& e = *entry_;
        if (e.depth == 0 && !takeFileLock(e, wait)) {
            e.mutex.unlock();
            return false;
        }
        if (e.depth++ == 0)
            e.owner.store(std::this_thread::get_id());
        ++held_;
        return true;
    }

    std::string name_;
    std::shared_ptr<LockEntry> entry_;
    int held_ = 0;   // levels taken through this object
};

bool usableName(const std::string& name)
{
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos
        && name.find('\0') == std::string::npos;
}

} // namespace

std::unique_ptr<NamedLock> createNamedLock(const std::string& name)
{
    if (!usableName(name))
        return nullptr;
    const auto runtime = runtimeDirectory();
    if (runtime.empty())
        return nullptr;
    const std::string folder = runtime.native() + "/locks";
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        return nullptr;
    auto entry = entryFor(folder + "/" + name + ".lock");
    if (!entry)
        return nullptr;
    return std::make_unique<PosixNamedLock>(name, std::move(entry));
}

} // namespace vx::platform
