#include "maintenance/system_log.h"

#include <atomic>
#include <iostream>
#include <mutex>
#include <vector>

namespace vx::maintenance {
namespace {

// Owned here; readers on any thread see the pointer, the owner (the main
// thread) replaces or closes it only at start and at exit.
std::atomic<LogBuffer*> systemLogPtr{nullptr};
std::atomic<LogBuffer*> perfLogPtr{nullptr};

// A replaced log is closed but never destroyed: a thread that outlives the
// teardown (the detached timer thread, a request still under way) may hold
// the pointer it loaded a moment before, and then writes nowhere instead of
// into freed memory.
void retire(LogBuffer* log)
{
    static auto* retired = new std::vector<std::unique_ptr<LogBuffer>>;
    static std::mutex guard;
    log->close();
    std::lock_guard<std::mutex> lock(guard);
    retired->emplace_back(log);
}

void replace(std::atomic<LogBuffer*>& slot, LogBuffer* log)
{
    LogBuffer* old = slot.exchange(log);
    if (old && std::cerr.rdbuf() == old)
        std::cerr.rdbuf(nullptr);
    if (old)
        retire(old);
}

} // namespace

LogBuffer* systemLog() { return systemLogPtr.load(std::memory_order_acquire); }
LogBuffer* perfLog() { return perfLogPtr.load(std::memory_order_acquire); }

void setSystemLog(std::unique_ptr<LogBuffer> log) { replace(systemLogPtr, log.release()); }
void setPerfLog(std::unique_ptr<LogBuffer> log) { replace(perfLogPtr, log.release()); }

void logLine(const std::string& text)
{
    if (LogBuffer* log = systemLog())
        log->writeLine(text);
}

void closeLogs()
{
    logLine("Close");
    replace(systemLogPtr, nullptr);
    replace(perfLogPtr, nullptr);
}

} // namespace vx::maintenance
