// Spawned tasks on the process's default Win32 thread pool. Each task is one
// TrySubmitThreadpoolCallback; a count of those not finished lets teardown
// wait. Should the pool refuse a task, a thread of its own runs it.
#include "supervision/task_group.h"

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <system_error>
#include <thread>

#include <windows.h>

namespace vx::supervision {

struct TaskGroup::Pool {
    std::mutex mutex;
    std::condition_variable idle;
    std::size_t running = 0;

    void finished() {
        std::lock_guard<std::mutex> lock(mutex);
        if (--running == 0) idle.notify_all();
    }
};

namespace {

struct Submitted {
    TaskGroup::Pool* pool;
    std::function<void()> task;
};

void run(Submitted* submitted) {
    runSpawnedTask(submitted->task);
    TaskGroup::Pool* pool = submitted->pool;
    delete submitted;   // the task's captures go before the count drops
    pool->finished();
}

void CALLBACK poolCallback(PTP_CALLBACK_INSTANCE, PVOID context) { run(static_cast<Submitted*>(context)); }

} // namespace

TaskGroup::TaskGroup() : pool_(std::make_unique<Pool>()) {}

TaskGroup::~TaskGroup() { waitAll(); }

void TaskGroup::spawn(std::function<void()> task) {
    {
        std::lock_guard<std::mutex> lock(pool_->mutex);
        ++pool_->running;
    }
    auto* submitted = new Submitted{pool_.get(), std::move(task)};
    if (TrySubmitThreadpoolCallback(&poolCallback, submitted, nullptr)) return;
    try {
        std::thread([submitted] { run(submitted); }).detach();
    } catch (const std::system_error&) {
        run(submitted);   // no thread to be had: run it here rather than lose it
    }
}

void TaskGroup::waitAll() {
    std::unique_lock<std::mutex> lock(pool_->mutex);
    pool_->idle.wait(lock, [this] { return pool_->running == 0; });
}

} // namespace vx::supervision
