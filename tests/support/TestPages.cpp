#include "support/TestPages.hpp"

#include <pagegen/PageGen.hpp>

#include <unistd.h>

#include <charconv>
#include <fstream>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace testvalues {

namespace {

/// The generated pages of this process; removes their folder when the process ends.
class GeneratedPages {
public:
    ~GeneratedPages() {
        std::error_code ignored;
        if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
    }

    std::filesystem::path page(std::string const& name, pagegen::Shape shape, std::uint64_t seed) {
        std::lock_guard const lock(mutex_);
        if (auto const found = files_.find(name); found != files_.end()) return found->second;
        if (folder_.empty()) {
            folder_ = std::filesystem::temp_directory_path() / ("refprop-test-pages-" + std::to_string(::getpid()));
            std::filesystem::create_directories(folder_);
        }
        std::filesystem::path const file = folder_ / (name + ".json");
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out << pagegen::generatePage(seed, shape);
        out.close();
        if (!out) throw std::runtime_error("cannot write " + file.string());
        return files_.emplace(name, file).first->second;
    }

private:
    std::mutex mutex_;
    std::filesystem::path folder_;                          ///< empty until the first page is written
    std::map<std::string, std::filesystem::path> files_;    ///< by page name
};

GeneratedPages& generatedPages() {
    static GeneratedPages pages;
    return pages;
}

}  // namespace

std::filesystem::path testPage(std::string const& name) {
    for (char const* handWritten : {"full", "unicode", "minimal"})
        if (name == handWritten) return std::filesystem::path(REFPROP_SOURCE_DIR) / "tests/data/good" / (name + ".json");
    std::size_t const dash = name.rfind('-');
    std::string_view const shapeName = std::string_view(name).substr(0, dash == std::string::npos ? 0 : dash);
    std::uint64_t seed = 0;
    bool const numbered = dash != std::string::npos && dash + 1 < name.size() &&
                          std::from_chars(name.data() + dash + 1, name.data() + name.size(), seed).ptr ==
                              name.data() + name.size();
    if (numbered && shapeName == "drawn") return generatedPages().page(name, pagegen::Shape::Drawn, seed);
    if (numbered && shapeName == "full") return generatedPages().page(name, pagegen::Shape::Full, seed);
    if (numbered && shapeName == "largest") return generatedPages().page(name, pagegen::Shape::Largest, seed);
    throw std::invalid_argument("no test page is called \"" + name + "\"");
}

std::optional<std::filesystem::path> corpusFolder() {
    std::filesystem::path const folder(REFPROP_CORPUS_DIR);
    std::error_code error;
    if (std::filesystem::is_directory(folder, error)) return folder;
    return std::nullopt;
}

}  // namespace testvalues
