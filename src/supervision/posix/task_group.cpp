// Spawned tasks on oneTBB's task_group.
#include "supervision/task_group.h"

#include <tbb/task_group.h>

namespace vx::supervision {

struct TaskGroup::Pool {
    tbb::task_group group;
};

TaskGroup::TaskGroup() : pool_(std::make_unique<Pool>()) {}

// A task_group destroyed with tasks still running complains; waiting first
// keeps it quiet.
TaskGroup::~TaskGroup() { waitAll(); }

void TaskGroup::spawn(std::function<void()> task) {
    pool_->group.run([task = std::move(task)] { runSpawnedTask(task); });
}

void TaskGroup::waitAll() { pool_->group.wait(); }

} // namespace vx::supervision
