#include "supervision/task_group.h"

#include <exception>
#include <iostream>

namespace vx::supervision {

void runSpawnedTask(const std::function<void()>& task) noexcept {
    try {
        task();
    } catch (const std::exception& e) {
        std::cerr << "Spawned task failed: " << e.what() << std::endl;
    } catch (...) {
        std::cerr << "Spawned task failed" << std::endl;
    }
}

} // namespace vx::supervision
