#pragma once
// A fresh folder under /tmp for one test, removed with everything in it when
// the object goes.
#include <filesystem>
#include <string>

namespace vx::test {

class TempDir {
public:
    explicit TempDir(const std::string& prefix = "vexlane-test-");
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

// Sets an environment variable for one scope and puts the old value back.
class ScopedEnv {
public:
    ScopedEnv(const std::string& name, const std::string& value);
    ~ScopedEnv();
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    std::string name_;
    std::string previous_;
    bool hadPrevious_ = false;
};

// A private runtime folder for one test: XDG_RUNTIME_DIR points into a fresh
// temporary folder, so locks and windows never meet the real session's.
// Processes started meanwhile inherit it.
class RuntimeSandbox {
public:
    RuntimeSandbox() : env_("XDG_RUNTIME_DIR", dir_.path().string()) {}
    const std::filesystem::path& root() const { return dir_.path(); }

private:
    TempDir dir_;
    ScopedEnv env_;
};

} // namespace vx::test
