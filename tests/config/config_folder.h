#pragma once
// A fresh config folder, its files as text, and a fixture that reads one
// file of it with standard error kept.
#include <filesystem>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/captured_stderr.h"
#include "support/temp_dir.h"
#include "support/text_file.h"

namespace vx::config::test {

using vx::test::CapturedStderr;

// Its path is ASCII, so the 1251 text spells it the same.
class ConfigFolder {
public:
    std::string dir() const { return folder_.path().string(); }
    std::filesystem::path file(const std::string& name) const { return folder_.path() / name; }
    // The text of a written file (line ends as "\n", see support/text_file.h).
    std::string bytes(const std::string& name) const { return vx::test::readText(file(name)); }
    void put(const std::string& name, const std::string& text) const { vx::test::writeFileBytes(file(name), text); }

private:
    vx::test::TempDir folder_;
};

// A config folder with the locks in a private runtime folder.
class ConfigFileTest : public ::testing::Test {
protected:
    std::string dir() const { return folder_.dir(); }

    // Writes `text` as `name`, then runs `load`, keeping what it printed in
    // `errors_`; gives back what `load` returns.
    template <typename Load>
    auto loadWith(const std::string& name, const std::string& text, Load&& load)
    {
        folder_.put(name, text);
        CapturedStderr err;
        if constexpr (std::is_void_v<decltype(load())>) {
            load();
            errors_ = err.text();
        } else {
            auto result = load();
            errors_ = err.text();
            return result;
        }
    }

    vx::test::RuntimeSandbox runtime_;
    ConfigFolder folder_;
    std::string errors_;
};

} // namespace vx::config::test
