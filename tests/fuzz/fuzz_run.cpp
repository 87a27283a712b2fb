// The short run of a fuzz input that every build carries: each file of a
// corpus folder, then a fixed number of inputs mutated from them by a
// seeded generator, so every run feeds the same bytes. A fault shows as an
// abort or a sanitizer report; a clean run prints a summary and exits 0.
//
//   fuzz_run <input name> <corpus folder> [mutated inputs, default 3000]
//   fuzz_run --list
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "fuzz_registry.h"
#include "fuzz_support.h"

namespace {

constexpr std::size_t maxInputSize = 4096;

// Pieces most readers give meaning to; each input adds its own.
const char* const commonTokens[] = {
    ",", "\n", "\r\n", "\"", "{", "}", "[", "]", ":", "\\", "-", " ", "\t", "<", ">", "/", "&", "%",
    "-1", "0", "7", "99999999999", "2147483647", "-2147483649", "\xC0\xC1", "\xD0\x90", "\xFF",
    "null", "true", "false", "1.5e9", "\"\"", "[]", "{}",
};

std::string mutate(std::string input, std::mt19937& random, const std::vector<std::string>& tokens)
{
    auto below = [&random](std::size_t n) {
        return n == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
    };
    const std::size_t steps = 1 + below(8);
    for (std::size_t step = 0; step < steps; ++step) {
        switch (below(6)) {
        case 0:   // flip a byte
            if (!input.empty())
                input[below(input.size())] = static_cast<char>(below(256));
            break;
        case 1:   // insert a byte
            input.insert(input.begin() + static_cast<std::ptrdiff_t>(below(input.size() + 1)),
                         static_cast<char>(below(256)));
            break;
        case 2:   // insert a token
            input.insert(below(input.size() + 1), tokens[below(tokens.size())]);
            break;
        case 3:   // cut a range
            if (!input.empty()) {
                const std::size_t at = below(input.size());
                input.erase(at, 1 + below(std::min<std::size_t>(input.size() - at, 16)));
            }
            break;
        case 4:   // repeat a range
            if (!input.empty()) {
                const std::size_t at = below(input.size());
                input.insert(below(input.size() + 1), input.substr(at, 1 + below(32)));
            }
            break;
        default:   // truncate
            input.resize(below(input.size() + 1));
            break;
        }
    }
    if (input.size() > maxInputSize)
        input.resize(maxInputSize);
    return input;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::string(argv[1]) == "--list") {
        for (const std::string& name : vx::fuzz::fuzzTargetNames())
            std::printf("%s\n", name.c_str());
        return 0;
    }
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s <input name> <corpus folder> [mutated inputs]\n       %s --list\n",
                     argv[0], argv[0]);
        return 2;
    }
    const vx::fuzz::FuzzTarget* target = vx::fuzz::findFuzzTarget(argv[1]);
    if (!target) {
        std::fprintf(stderr, "no fuzz input named %s (--list names them)\n", argv[1]);
        return 2;
    }
    const long mutated = argc > 3 ? std::strtol(argv[3], nullptr, 10) : 3000;
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(argv[2], error))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());   // the same order on every run
    std::vector<std::string> corpus;
    for (const auto& file : files)
        corpus.push_back(vx::fuzz::readFileBytes(file));
    if (corpus.empty()) {
        std::fprintf(stderr, "no corpus in %s\n", argv[2]);
        return 2;
    }
    std::vector<std::string> tokens(std::begin(commonTokens), std::end(commonTokens));
    tokens.insert(tokens.end(), target->tokens.begin(), target->tokens.end());

    auto feed = [target](const std::string& input) {
        target->input(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    };
    for (const std::string& input : corpus)
        feed(input);
    feed("");

    std::mt19937 random(20240301u);
    for (long i = 0; i < mutated; ++i) {
        std::string input = corpus[random() % corpus.size()];
        // Now and then splice two corpus inputs, as a fuzzer crosses them.
        if (random() % 8 == 0)
            input += corpus[random() % corpus.size()];
        feed(mutate(std::move(input), random, tokens));
    }
    std::printf("%s fuzz run: %zu corpus inputs, %ld mutated, no fault\n", target->name.c_str(), corpus.size(),
                mutated);
    return 0;
}
