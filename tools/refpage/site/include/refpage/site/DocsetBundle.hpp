// A site packaged as an offline docset: NAME.docset/Contents/Info.plist, the site in
// Contents/Resources/Documents/, its SQLite index in Contents/Resources/docSet.dsidx.
#pragma once

#include <filesystem>
#include <refpage/site/Site.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

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

/// Writes the docset folder at `output`, whole or not at all as buildSite writes a site: the
/// site of `loaded` in Contents/Resources/Documents/ (`site.output` is ignored), its pages laid
/// out for a docset browser, Info.plist, the icons, the lookup index of the set as docSet.dsidx
/// with each entry's path its page's site path, and meta.json with the name. Throws FileError
/// when `output` may not be replaced.
SiteReport buildDocset(LoadedSet const& loaded, std::span<PageInput const> inputs, std::filesystem::path const& output,
                       std::string_view name, SiteOptions site);

}  // namespace refpage
