// Files for tests: the pages of tests/data, scratch folders, the smallest page.
#pragma once

#include <stdlib.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace testvalues {

/// True when `part` occurs in `text`.
inline bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// The bytes of `file`; empty when it cannot be read.
inline std::string readFile(std::filesystem::path const& file) {
    std::ifstream in(file, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return text;
}

using Lines = std::vector<std::string>;

/// The lines of `text`, the last one whether or not a newline ends it.
inline Lines lines(std::string const& text) {
    Lines result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) result.push_back(line);
    return result;
}

/// The permission bits of `path` itself (a symlink not followed).
inline mode_t modeOf(std::filesystem::path const& path) {
    struct stat status {};
    ::lstat(path.c_str(), &status);
    return status.st_mode & 07777;
}

/// The names in `folder`, sorted.
inline Lines namesIn(std::filesystem::path const& folder) {
    Lines found;
    for (auto const& entry : std::filesystem::directory_iterator(folder)) found.push_back(entry.path().filename().string());
    std::sort(found.begin(), found.end());
    return found;
}

/// Every entry under `root` (symlinks not followed) with its bytes, its link target or "<folder>".
inline std::map<std::string, std::string> fileTree(std::filesystem::path const& root) {
    std::map<std::string, std::string> entries;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(root)) {
        std::string const name = entry.path().lexically_relative(root).string();
        if (entry.is_symlink())
            entries[name] = "-> " + std::filesystem::read_symlink(entry.path()).string();
        else if (entry.is_directory())
            entries[name] = "<folder>";
        else
            entries[name] = readFile(entry.path());
    }
    return entries;
}

/// A test page file of tests/data.
inline std::string data(std::string const& name) {
    return std::string(REFPAGE_TEST_DATA) + "/" + name;
}

/// A fresh folder under the system's temporary folder, removed with everything in it.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "refpage-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) != nullptr) path_ = pattern;
    }
    ScratchFolder(ScratchFolder const&) = delete;
    ScratchFolder& operator=(ScratchFolder const&) = delete;
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    std::filesystem::path const& path() const noexcept { return path_; }
    std::filesystem::path operator/(std::string const& name) const { return path_ / name; }

    /// Writes `text` to `name` inside the folder, making its parent folders.
    std::filesystem::path write(std::string const& name, std::string_view text) const {
        std::filesystem::path const file = path_ / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        return file;
    }

private:
    std::filesystem::path path_;
};

/// The smallest page that loads.
inline constexpr std::string_view minimalPage =
    R"({"Href": "demo/small.html", "RefEntities": [{"Name": "demo.small"}]})";

}  // namespace testvalues
