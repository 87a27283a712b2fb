// Parallel work through oneTBB: the caller's arena and its limits apply.
#include "liveview/parallel_work.h"

#include <tbb/parallel_for.h>

namespace vx::liveview {

void forEachInParallel(int count, const std::function<void(int)>& fn)
{
    if (count > 0)
        tbb::parallel_for(0, count, [&fn](int i) { fn(i); });
}

} // namespace vx::liveview
