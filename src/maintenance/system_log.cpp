#include "maintenance/system_log.h"

#include <atomic>
#include <iostream>

namespace vx::maintenance {
namespace {

// Owned here; readers on any thread see the pointer, the owner (the main
// thread) replaces or destroys it only at start and at exit.
std::atomic<LogBuffer*> systemLogPtr{nullptr};
std::atomic<LogBuffer*> perfLogPtr{nullptr};

void replace(std::atomic<LogBuffer*>& slot, LogBuffer* log)
{
    LogBuffer* old = slot.exchange(log);
    if (old && std::cerr.rdbuf() == old)
        std::cerr.rdbuf(nullptr);
    delete old;
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
