#pragma once

namespace vx::test {

// A bound on a wait for a real process, stretched by VEXLANE_TEST_TIME_SCALE
// (a number >= 1, e.g. 4 in the sanitized builds, whose processes run slower).
// Only ever lengthens a bound: a test that waits for success still ends early.
int scaledMs(int timeoutMs);

} // namespace vx::test
