#include "fuzz_support.h"

#include <cstdio>
#include <cstdlib>
#include <random>

namespace vx::fuzz {

const std::filesystem::path& fuzzFolder()
{
    static const std::filesystem::path folder = [] {
        std::random_device random;
        const auto path = std::filesystem::temp_directory_path() / ("vexlane-fuzz-" + std::to_string(random()));
        std::error_code ignored;
        std::filesystem::create_directories(path, ignored);
        std::atexit([] {
            std::error_code ignored;
            std::filesystem::remove_all(fuzzFolder(), ignored);
        });
        return path;
    }();
    return folder;
}

void check(bool condition, const char* what)
{
    if (condition)
        return;
    std::fprintf(stderr, "fuzz input: %s\n", what);
    std::abort();
}

void removeKeptCopies(const std::filesystem::path& folder)
{
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
        const std::string extension = entry.path().extension().string();
        if (extension == ".bak" || extension == ".broken" || extension == ".tmp")
            std::filesystem::remove(entry.path(), ignored);
    }
}

} // namespace vx::fuzz
