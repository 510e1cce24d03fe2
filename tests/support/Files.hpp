// Files for tests: the pages of tests/data, scratch folders, the smallest page.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

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
