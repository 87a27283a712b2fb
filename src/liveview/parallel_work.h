#pragma once
// Work spread over the machine's cores: fn(i) for every i in 0..count-1,
// in any order and side by side; returns when all are done.
#include <functional>

namespace vx::liveview {

void forEachInParallel(int count, const std::function<void(int)>& fn);

} // namespace vx::liveview
