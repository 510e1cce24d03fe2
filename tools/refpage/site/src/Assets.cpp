#include <fmt/format.h>

#include <refpage/site/Assets.hpp>
#include <refpage/site/Paths.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/RelativePath.hpp>
#include <refpage/support/Text.hpp>

namespace refpage {

namespace {

/// The places pages take, ignoring ASCII case as file systems may: their files and every folder above them.
struct PagePlaces {
    std::unordered_set<std::string> files;
    std::unordered_set<std::string> folders;

    explicit PagePlaces(std::vector<std::string> const& paths) {
        for (auto const& path : paths) {
            std::string const lowered = asciiLowered(path);
            files.insert(lowered);
            for (auto slash = lowered.find('/'); slash != std::string::npos; slash = lowered.find('/', slash + 1))
                folders.insert(lowered.substr(0, slash));
        }
    }

    /// True when a file at `path` would stand where a page or the site's own files go.
    bool blocks(std::string_view path) const {
        std::string const lowered = asciiLowered(path);
        if (lowered == siteIndexPath || lowered == siteNotFoundPath || lowered == "objects.inv" ||
            lowered.starts_with(siteAssetFolder) || files.contains(lowered) || folders.contains(lowered))
            return true;
        for (auto slash = lowered.find('/'); slash != std::string::npos; slash = lowered.find('/', slash + 1))
            if (files.contains(lowered.substr(0, slash))) return true;
        return false;
    }
};

}  // namespace

std::unordered_set<std::string> publishAssets(DocSet const& set, std::vector<std::string> const& pagePaths,
                                              AssetFolder const& assets, OutputFolder& out, std::string_view prefix,
                                              PageErrors& warnings) {
    PagePlaces const places(pagePaths);
    std::unordered_set<std::string> seen, published;
    for (auto const& page : set.pages()) {
        for (auto const& file : page.files) {
            if (!safeRelativePath(file.text) || !seen.insert(asciiLowered(file.text)).second) continue;
            std::string why;
            if (!assets.holds(file.text, why)) continue;  // reported by fileFindings
            if (places.blocks(file.text)) {
                warnings.push_back(PageError{page.source, file.pointer,
                                             fmt::format("file {}{} would stand where a page or the site's own files "
                                                         "go; it is not published",
                                                         refpage::quoted(file.text), file.where())});
                continue;
            }
            std::optional<std::string> const bytes = assets.read(file.text, why);
            if (!bytes) continue;  // gone or changed since: reported by fileFindings
            if (out.writeFile(std::string(prefix) + file.text, *bytes)) published.insert(file.text);
        }
    }
    return published;
}

}  // namespace refpage
