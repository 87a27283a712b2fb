#include "support/temp_dir.h"

#include <cstdlib>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace vx::test {

TempDir::TempDir(const std::string& prefix)
{
    std::string pattern = (std::filesystem::temp_directory_path() / (prefix + "XXXXXX")).string();
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    if (!::mkdtemp(buffer.data()))
        throw std::runtime_error("mkdtemp failed for " + pattern);
    path_ = buffer.data();
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
    ::setenv(name.c_str(), value.c_str(), 1);
}

ScopedEnv::~ScopedEnv()
{
    if (hadPrevious_)
        ::setenv(name_.c_str(), previous_.c_str(), 1);
    else
        ::unsetenv(name_.c_str());
}

} // namespace vx::test
