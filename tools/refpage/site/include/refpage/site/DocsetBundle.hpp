// A site packaged as an offline docset: NAME.docset/Contents/Info.plist, the site in
// Contents/Resources/Documents/, its SQLite index in Contents/Resources/docSet.dsidx.
#pragma once

#include <filesystem>
#include <functional>
#include <refpage/site/Site.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// Writes the docset's index at `file` for pages at `paths` (site paths, in page order,
/// relative to Documents/); false with an error when it cannot.
using DocsetIndexWriter =
    std::function<bool(std::filesystem::path const& file, std::vector<std::string> const& paths, PageErrors& errors)>;

/// `name` lowered, keeping ASCII letters, digits, '.', '-' and '_' ("docset" when none is
/// left): the bundle identifier and platform family.
std::string docsetIdentifier(std::string_view name);

/// Info.plist: CFBundleIdentifier, CFBundleName, DocSetPlatformFamily, isDashDocset,
/// isJavaScriptEnabled, dashIndexFilePath (index.html), and DashDocSetFallbackURL when
/// `baseUrl` is not empty. Texts are XML-escaped.
std::string docsetInfoPlist(std::string_view name, std::string_view baseUrl = {});

/// The docset's icons beside Contents/: icon.png (16x16) and icon@2x.png (32x32), the project's own.
struct DocsetIcon {
    std::string_view file;
    std::string_view bytes;
};
std::vector<DocsetIcon> docsetIcons();

/// Writes the docset folder at `output` with `site` (its `output` is ignored: the site
/// goes into Documents/, its pages laid out for a docset browser). meta.json holds the name.
SiteReport buildDocset(std::span<SitePageInput const> pages, SiteLinkResolver const& resolve,
                       std::filesystem::path const& output, std::string_view name, SiteOptions site,
                       DocsetIndexWriter const& writeIndex);

}  // namespace refpage
