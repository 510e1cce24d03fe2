#include <cctype>
#include <refpage/format/Description.hpp>
#include <refpage/format/PageFiles.hpp>
#include <refpage/support/RelativePath.hpp>
#include <refpage/support/Text.hpp>

namespace refpage {

namespace {

/// True for "scheme:..." (RFC 3986), "//host" and "/path": nothing of the doc set.
bool external(std::string_view target) {
    if (target.starts_with('/')) return true;
    if (target.empty() || !std::isalpha(static_cast<unsigned char>(target.front()))) return false;
    for (char const c : target) {
        if (c == ':') return true;
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '+' && c != '-' && c != '.') return false;
    }
    return false;
}

}  // namespace

std::vector<PageFile> filesOf(reference::property::RefItem const& page) {
    std::vector<PageFile> files;
    std::string const thumbnail = utf8(page.getAppThumbnail().getFileRef());
    if (!thumbnail.empty())
        files.push_back({thumbnail, safeRelativePath(thumbnail).has_value(), "/AppThumbnail/FileRef", {}});
    if (page.getDescription().empty()) return files;
    for (auto& reference : descriptionReferences(utf8(page.getDescription()))) {
        if (reference.kind != DescriptionReference::Kind::Image || reference.target.empty() || external(reference.target))
            continue;
        bool const safe = safeRelativePath(reference.target).has_value();
        files.push_back({std::move(reference.target), safe, "/Description", reference.position});
    }
    return files;
}

}  // namespace refpage
