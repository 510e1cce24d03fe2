#include <refpage/format/Description.hpp>
#include <refpage/format/Links.hpp>
#include <refpage/format/PageFiles.hpp>
#include <refpage/support/RelativePath.hpp>
#include <refpage/support/Text.hpp>

namespace refpage {

std::vector<PageFile> filesOf(reference::property::RefItem const& page) {
    return filesOf(page, ParsedDescription::parse(utf8(page.getDescription())));
}

std::vector<PageFile> filesOf(reference::property::RefItem const& page, ParsedDescription const& description) {
    std::vector<PageFile> files;
    std::string const thumbnail = utf8(page.getAppThumbnail().getFileRef());
    if (!thumbnail.empty())
        files.push_back({thumbnail, safeRelativePath(thumbnail).has_value(), "/AppThumbnail/FileRef", {}});
    for (auto& reference : description.references()) {
        if (reference.kind != DescriptionReference::Kind::Image || reference.target.empty() ||
            isExternalLink(reference.target))
            continue;
        bool const safe = safeRelativePath(reference.target).has_value();
        files.push_back({std::move(reference.target), safe, "/Description", reference.position});
    }
    return files;
}

}  // namespace refpage
