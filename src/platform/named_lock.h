#pragma once
// A named lock shared by every process of this user's session: the agreed
// guard between the manager and the suite's processes around files they
// share. On POSIX it is an flock on <runtime>/locks/<name>.lock; the kernel
// drops it when the holder dies, so a lock file left behind by a dead process
// never blocks anybody. It is recursive within one thread and exclusive
// between threads and processes.
#include <memory>
#include <string>

namespace vx::platform {

class NamedLock {
public:
    virtual ~NamedLock() = default;
    // Waits without limit. Returns false only when the lock can't be taken at
    // all (the lock file can't be opened).
    virtual bool lock() = 0;
    // Takes the lock when it is free (or held by this thread), never waits.
    virtual bool tryLock() = 0;
    virtual void unlock() = 0;
    virtual const std::string& name() const = 0;
};

// Creates (or opens) the lock named `name`. Null when the runtime folder or
// the lock file can't be had; the caller reports that as its own failure.
std::unique_ptr<NamedLock> createNamedLock(const std::string& name);

// Holds a named lock for one scope.
class NamedLockGuard {
public:
    explicit NamedLockGuard(NamedLock& lock) : lock_(lock), held_(lock.lock()) {}
    ~NamedLockGuard() { if (held_) lock_.unlock(); }
    NamedLockGuard(const NamedLockGuard&) = delete;
    NamedLockGuard& operator=(const NamedLockGuard&) = delete;
    bool held() const { return held_; }
private:
    NamedLock& lock_;
    bool held_;
};

} // namespace vx::platform
