// Replays kept fuzz inputs: `fuzz_replay <target> <file or directory>...` runs
// every regular file (directories recursively, in sorted order) through the
// target's entry function. A broken invariant aborts; otherwise it prints how
// many inputs ran and exits 0.
#include "FuzzEntries.hpp"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace fs = std::filesystem;

int main(int argc, char** argv) {
    auto const targets = refprop::fuzz::fuzzTargets();
    auto const target = std::find_if(targets.begin(), targets.end(),
                                     [&](auto const& t) { return argc >= 3 && t.name == argv[1]; });
    if (target == targets.end()) {
        std::fprintf(stderr, "usage: %s <target> <file or directory>... (a known target, at least one input)\n",
                     argv[0]);
        return 2;
    }
    std::vector<fs::path> inputs;
    for (int i = 2; i < argc; ++i) {
        if (!fs::exists(argv[i])) {
            std::fprintf(stderr, "no such input: %s\n", argv[i]);
            return 2;
        }
        if (!fs::is_directory(argv[i])) {
            inputs.emplace_back(argv[i]);
            continue;
        }
        for (auto const& entry : fs::recursive_directory_iterator(argv[i]))
            if (entry.is_regular_file()) inputs.push_back(entry.path());
    }
    std::sort(inputs.begin(), inputs.end());
    for (fs::path const& path : inputs) {
        std::ifstream file(path, std::ios::binary);
        std::vector<std::uint8_t> const bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        target->entry(bytes.data(), bytes.size());
    }
    std::printf("%s: replayed %zu input(s)\n", argv[1], inputs.size());
    return 0;
}
