// A named mutex of the system, opened by name as it stands (no session
// prefix). The system's mutex is already recursive within its owning thread
// and exclusive between threads and processes; a mutex whose holder died
// without releasing it is handed to the next waiter (WAIT_ABANDONED), which
// counts as taking it.
#include "platform/named_lock.h"

#include "platform/win32/wide_text.h"

#include <windows.h>

namespace vx::platform {

namespace {

class MutexLock : public NamedLock {
public:
    MutexLock(std::string name, HANDLE mutex) : name_(std::move(name)), mutex_(mutex) {}
    ~MutexLock() override { ::CloseHandle(mutex_); }
    bool lock() override { return taken(::WaitForSingleObject(mutex_, INFINITE)); }
    bool tryLock() override { return taken(::WaitForSingleObject(mutex_, 0)); }
    void unlock() override { ::ReleaseMutex(mutex_); }
    const std::string& name() const override { return name_; }
private:
    static bool taken(DWORD result) { return result == WAIT_OBJECT_0 || result == WAIT_ABANDONED; }
    std::string name_;
    HANDLE mutex_;
};

} // namespace

std::unique_ptr<NamedLock> createNamedLock(const std::string& name)
{
    HANDLE mutex = ::CreateMutexW(nullptr, FALSE, win32::widen(name).c_str());
    if (!mutex)
        return nullptr;
    return std::make_unique<MutexLock>(name, mutex);
}

} // namespace vx::platform
