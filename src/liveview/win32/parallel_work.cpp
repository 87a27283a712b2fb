// Parallel work on plain threads: one per core, less the caller's own, each
// taking the next index until none is left.
#include "liveview/parallel_work.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace vx::liveview {

void forEachInParallel(int count, const std::function<void(int)>& fn)
{
    if (count <= 0)
        return;
    std::atomic<int> next{0};
    auto work = [&] {
        for (int i = next++; i < count; i = next++)
            fn(i);
    };
    const int cores = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
    const int helpers = std::min(cores, count) - 1;
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(std::max(helpers, 0)));
    for (int t = 0; t < helpers; ++t)
        threads.emplace_back(work);
    work();
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace vx::liveview
