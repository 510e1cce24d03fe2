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
#include <string_view>
#include <vector>

namespace {

std::vector<std::uint8_t> readBytes(std::filesystem::path const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::filesystem::path> inputsUnder(std::filesystem::path const& root) {
    std::vector<std::filesystem::path> inputs;
    if (std::filesystem::is_directory(root)) {
        for (auto const& entry : std::filesystem::recursive_directory_iterator(root))
            if (entry.is_regular_file()) inputs.push_back(entry.path());
        std::sort(inputs.begin(), inputs.end());
    } else {
        inputs.push_back(root);
    }
    return inputs;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s <target> <file or directory>...\n", argv[0]);
        return 2;
    }
    std::string_view const name = argv[1];
    auto const targets = refprop::fuzz::fuzzTargets();
    auto const target = std::find_if(targets.begin(), targets.end(), [&](auto const& t) { return t.name == name; });
    if (target == targets.end()) {
        std::fprintf(stderr, "unknown fuzz target '%s'\n", argv[1]);
        return 2;
    }
    std::size_t replayed = 0;
    for (int i = 2; i < argc; ++i) {
        if (!std::filesystem::exists(argv[i])) {
            std::fprintf(stderr, "no such input: %s\n", argv[i]);
            return 2;
        }
        for (auto const& path : inputsUnder(argv[i])) {
            std::vector<std::uint8_t> const bytes = readBytes(path);
            target->entry(bytes.data(), bytes.size());
            ++replayed;
        }
    }
    std::printf("%s: replayed %zu input(s)\n", argv[1], replayed);
    return 0;
}
