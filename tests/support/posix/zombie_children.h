#pragma once
// Children of this process that ended and weren't reaped (state Z in
// /proc/<pid>/stat with this process as their parent).

namespace vx::test {

int zombieChildren();

} // namespace vx::test
