#include <fmt/format.h>
#include <sys/stat.h>

#include <refpage/support/Escape.hpp>
#include <refpage/support/OutputOverlap.hpp>
#include <set>
#include <utility>

namespace refpage {

namespace fs = std::filesystem;

namespace {

using Identity = std::pair<dev_t, ino_t>;

std::optional<Identity> identityOf(fs::path const& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return Identity{status.st_dev, status.st_ino};
}

/// The folders that hold `path` (made absolute, symlinks resolved as far as it exists), from
/// its deepest existing folder up to the root, each by identity.
std::set<Identity> holdingFolders(fs::path const& path) {
    std::set<Identity> folders;
    std::error_code error;
    fs::path existing = fs::absolute(path, error).parent_path();
    while (!existing.empty() && !fs::exists(existing, error)) existing = existing.parent_path();
    fs::path const canonical = fs::canonical(existing, error);
    if (error) return folders;
    for (fs::path folder = canonical;; folder = folder.parent_path()) {
        if (auto const identity = identityOf(folder)) folders.insert(*identity);
        if (folder == folder.parent_path()) break;
    }
    return folders;
}

}  // namespace

std::optional<std::string> outputOverlapsInput(fs::path const& output, std::span<std::string const> inputs) {
    std::optional<Identity> const outputItself = identityOf(output);
    struct stat outputStatus {};
    bool const outputIsFolder = ::stat(output.c_str(), &outputStatus) == 0 && S_ISDIR(outputStatus.st_mode);
    std::set<Identity> const aroundOutput = holdingFolders(output);
    for (std::string const& input : inputs) {
        if (input == "-") continue;
        std::optional<Identity> const inputItself = identityOf(input);
        if (!inputItself) continue;
        if (outputItself && *outputItself == *inputItself)
            return fmt::format("{}: the output would replace the input {}; nothing read or written",
                               refpage::quoted(output.string()), refpage::quoted(input));
        if (aroundOutput.contains(*inputItself))
            return fmt::format("{}: the output lies inside the input folder {}; nothing read or written: write it "
                               "outside the pages",
                               refpage::quoted(output.string()), refpage::quoted(input));
        if (outputIsFolder && holdingFolders(input).contains(*outputItself))
            return fmt::format("{}: the output folder holds the input {}, and writing it replaces everything in it; "
                               "nothing read or written",
                               refpage::quoted(output.string()), refpage::quoted(input));
    }
    return std::nullopt;
}

}  // namespace refpage
