// The short run of the white list fuzz input that every build carries: each
// file of a corpus folder, then a fixed number of inputs mutated from them by
// a seeded generator, so every run feeds the same bytes. A fault shows as an
// abort or a sanitizer report; a clean run prints a summary and exits 0.
//
//   white_list_fuzz_run <corpus folder> [mutated inputs, default 3000]
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "white_list_fuzz_input.h"

namespace {

constexpr std::size_t maxInputSize = 4096;

// Pieces that the readers give meaning to.
const char* const tokens[] = {
    ",", "\n", "\r\n", "\"", "{", "}", "[", "]", ":", "\\", "-", " ", "\t",
    "ID", "num", "car", "add", "time1", "time2", "ID,num,car,add\n", "ID,num,car,add,time1,time2\n",
    "\"lists\"", "\"whitelists\"", "\"file\"", "\"name\"", "\"permitted_access_days\"",
    "\"permitted_access_time1\"", "\"all_days\"", "2024-02-30", "23:59:59", "1, 3,5",
    "-1", "0", "7", "99999999999", "2147483647", "\xC0\xC1", "\xD0\x90", "null", "true", "1.5e9",
};

std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

std::string mutate(std::string input, std::mt19937& random) {
    auto below = [&random](std::size_t n) { return n == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, n - 1)(random); };
    const std::size_t steps = 1 + below(8);
    for (std::size_t step = 0; step < steps; ++step) {
        switch (below(6)) {
        case 0:   // flip a byte
            if (!input.empty()) input[below(input.size())] = static_cast<char>(below(256));
            break;
        case 1:   // insert a byte
            input.insert(input.begin() + static_cast<std::ptrdiff_t>(below(input.size() + 1)),
                         static_cast<char>(below(256)));
            break;
        case 2: {   // insert a token
            const std::string token = tokens[below(std::size(tokens))];
            input.insert(below(input.size() + 1), token);
            break;
        }
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
    if (input.size() > maxInputSize) input.resize(maxInputSize);
    return input;
}

void feed(const std::string& input) {
    vx::config::fuzz::readWhiteListFuzzInput(reinterpret_cast<const std::uint8_t*>(input.data()),
                                             input.size());
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s <corpus folder> [mutated inputs]\n", argv[0]);
        return 2;
    }
    const long mutated = argc > 2 ? std::strtol(argv[2], nullptr, 10) : 3000;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1]))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());   // the same order on every run
    std::vector<std::string> corpus;
    for (const auto& file : files) corpus.push_back(readFile(file));
    if (corpus.empty()) {
        std::fprintf(stderr, "no corpus in %s\n", argv[1]);
        return 2;
    }
    for (const std::string& input : corpus) feed(input);
    feed("");

    std::mt19937 random(20240301u);
    for (long i = 0; i < mutated; ++i) {
        std::string input = corpus[random() % corpus.size()];
        // Now and then splice two corpus inputs, as a fuzzer crosses them.
        if (random() % 8 == 0) input += corpus[random() % corpus.size()];
        feed(mutate(std::move(input), random));
    }
    std::printf("white list fuzz run: %zu corpus inputs, %ld mutated, no fault\n", corpus.size(),
                mutated);
    return 0;
}
