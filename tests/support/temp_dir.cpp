#include "support/temp_dir.h"

#include <cstdlib>
#include <random>
#include <stdexcept>
#include <system_error>

#include "support/environment.h"

namespace vx::test {

TempDir::TempDir(const std::string& prefix)
{
    // A new folder of a random name: create_directory tells whether it was
    // this call that made it, so two tests never share one.
    static const char letters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::random_device seed;
    std::mt19937 random(seed());
    const std::filesystem::path parent = std::filesystem::temp_directory_path();
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::string name = prefix;
        for (int i = 0; i < 8; ++i)
            name += letters[random() % (sizeof letters - 1)];
        std::error_code ec;
        if (std::filesystem::create_directory(parent / name, ec)) {
            path_ = parent / name;
            return;
        }
    }
    throw std::runtime_error("no temporary folder could be made in " + parent.string());
}

TempDir::~TempDir()
{
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
}

ScopedEnv::ScopedEnv(const std::string& name, const std::string& value) : name_(name)
{
    if (const char* old = std::getenv(name.c_str())) {
        previous_ = old;
        hadPrevious_ = true;
    }
    setEnvironment(name, value);
}

ScopedEnv::~ScopedEnv()
{
    if (hadPrevious_)
        setEnvironment(name_, previous_);
    else
        unsetEnvironment(name_);
}

} // namespace vx::test
