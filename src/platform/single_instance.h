#pragma once
// One manager per session: the first instance holds a named lock for its
// whole life; a later one finds the first's window and asks it to come
// forward, then leaves.
#include "platform/named_lock.h"

#include <memory>
#include <string>

namespace vx::platform {

// Tries the named lock without waiting. True when this process now holds it;
// `keep` then owns the lock and must live as long as the process. False when
// another process holds it, or when the lock can't be had at all.
bool acquireSingleInstance(const std::string& lockName, std::unique_ptr<NamedLock>& keep);

// Finds a window of class `className` (any title), restores it and brings it
// to the front. True when such a window was found, whether or not its owner
// answered.
bool raiseExistingInstance(const std::string& className);

} // namespace vx::platform
