#pragma once
// Work that is spawned and forgotten: the periodic requests, the image
// requests, the quota run, the hand signal. The platform's pool runs it:
// oneTBB's task_group on Linux (posix/), the Win32 thread pool on Windows
// (win32/). Nobody waits for a single task; teardown may wait for them all.
#include <functional>
#include <memory>

namespace vx::supervision {

class TaskGroup {
public:
    TaskGroup();
    // Waits for every task still running.
    ~TaskGroup();
    TaskGroup(const TaskGroup&) = delete;
    TaskGroup& operator=(const TaskGroup&) = delete;

    // Runs `task` on the pool some time later and returns at once. An
    // exception that escapes the task is written to standard error (the
    // system log) and goes no further.
    void spawn(std::function<void()> task);
    // Blocks until every task spawned so far has finished.
    void waitAll();

    struct Pool;   // the backend's

private:
    std::unique_ptr<Pool> pool_;
};

// Runs one spawned task, catching what escapes it. The backends call it.
void runSpawnedTask(const std::function<void()>& task) noexcept;

} // namespace vx::supervision
