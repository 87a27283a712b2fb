#pragma once
// A named block of memory shared between processes: a stream process creates
// its picture block, the manager opens it and maps a read-only view. On POSIX
// it is a shm_open object named "/<name>"; the first platform's file mapping
// of the same name takes its place there.
#include <cstddef>
#include <memory>
#include <string>

namespace vx::platform {

// An open block and its view; going away unmaps the view and closes the
// object (the last creator's going also removes the name).
class SharedBlock {
public:
    virtual ~SharedBlock() = default;
    virtual const char* data() const = 0;
    virtual std::size_t size() const = 0;
    // Whether the name still leads to this block. A stream that was killed
    // and started again makes a new block under the old name; a view of the
    // old one then shows a picture that never changes.
    virtual bool current() const { return true; }
};

class WritableSharedBlock : public SharedBlock {
public:
    virtual char* writableData() = 0;
};

// Opens the block `name` and maps `size` bytes of it read-only from offset
// 0. Null when there is no such block or it is shorter than `size` (mapping
// past its end would fault on reading).
std::shared_ptr<SharedBlock> openSharedBlock(const std::string& name, std::size_t size);

// Creates the block `name` with `size` bytes, or joins the one that exists
// under that name, and maps it for writing. The name goes with the last of
// its creators. Null on failure.
std::unique_ptr<WritableSharedBlock> createSharedBlock(const std::string& name, std::size_t size);

} // namespace vx::platform
