#pragma once
// The two process-wide logs: the system log, which every part writes to, and
// the performance log (perf.txt). Both are null until the create handler
// opens them, and again after closeLogs().
//
// A call site tests the threshold before it builds its message:
//
//     VX_LOG(vx::maintenance::logError, "AddCamera " + name + " error!");
//
// The message expression is evaluated only when a system log exists and the
// level passes its minLevel, so a filtered line costs one comparison.
#include <memory>
#include <string>

#include "maintenance/log_buffer.h"

namespace vx::maintenance {

LogBuffer* systemLog();
LogBuffer* perfLog();
// Take ownership; an object already there is closed first.
void setSystemLog(std::unique_ptr<LogBuffer> log);
void setPerfLog(std::unique_ptr<LogBuffer> log);

// The system log when a line of `level` would be written, else null.
inline LogBuffer* systemLogFor(int level)
{
    LogBuffer* log = systemLog();
    return log && log->accepts(level) ? log : nullptr;
}

// A level-less line in the system log (no filter), when it exists.
void logLine(const std::string& text);

// The end of the manager's main function: "Close" into the system log, then
// the system log is closed, then the performance log. Each step is
// skipped for a log that doesn't exist. std::cerr, which may still point at
// the system log, is left without a buffer so that later output can't reach
// a closed one. A closed log stays in memory until the process ends.
void closeLogs();

} // namespace vx::maintenance

#define VX_LOG(level, message)                                                              \
    do {                                                                                    \
        if (::vx::maintenance::LogBuffer* vxLogTarget_ = ::vx::maintenance::systemLogFor(level)) \
            vxLogTarget_->log((level), (message));                                         \
    } while (0)
