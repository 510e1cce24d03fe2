#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <refpage/site/DocsetBundle.hpp>
#include <refpage/site/Html.hpp>
#include <refpage/site/Paths.hpp>
#include <refpage/support/Text.hpp>

namespace refpage {

std::string docsetIdentifier(std::string_view name) {
    std::string id;
    for (char c : name) {
        c = asciiLower(c);
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '_') id += c;
    }
    return id.empty() ? std::string("docset") : id;
}

std::string docsetInfoPlist(std::string_view name, std::string_view baseUrl) {
    std::string const id = docsetIdentifier(name);
    std::string const fallback =
        baseUrl.empty() ? std::string()
                        : fmt::format("\t<key>DashDocSetFallbackURL</key>\n\t<string>{}</string>\n", escapeHtml(baseUrl));
    return fmt::format(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\">\n<dict>\n"
        "\t<key>CFBundleIdentifier</key>\n\t<string>{0}</string>\n"
        "\t<key>CFBundleName</key>\n\t<string>{1}</string>\n"
        "\t<key>DocSetPlatformFamily</key>\n\t<string>{0}</string>\n"
        "\t<key>isDashDocset</key>\n\t<true/>\n"
        "\t<key>isJavaScriptEnabled</key>\n\t<true/>\n"
        "\t<key>dashIndexFilePath</key>\n\t<string>index.html</string>\n"
        "{2}"
        "</dict>\n</plist>\n",
        escapeHtml(id), escapeHtml(name), fallback);
}

std::vector<DocsetIcon> docsetIcons() {
    return {{"icon.png", defaultSiteFile("icon.png")}, {"icon@2x.png", defaultSiteFile("icon@2x.png")}};
}

SiteReport buildDocset(LoadedSet const& loaded, std::span<PageInput const> inputs, std::filesystem::path const& output,
                       std::string_view name, SiteOptions site) {
    if (site.title == SiteOptions{}.title) site.title = std::string(name);
    site.docset = true;
    OutputFolder out(output);
    SiteReport report = writeSite(loaded, inputs, site, out, "Contents/Resources/Documents/");
    out.writeFile("Contents/Info.plist", docsetInfoPlist(name, site.baseUrl));
    for (auto const& icon : docsetIcons()) out.writeFile(icon.file, icon.bytes);
    nlohmann::json const meta{{"name", std::string(name)}, {"title", std::string(name)}};
    out.writeFile("meta.json", meta.dump(1, ' ', true, nlohmann::json::error_handler_t::replace) + "\n");
    // The docset's index is the lookup index, its paths the pages' places in the site, written
    // by SQLite straight into the staging folder.
    try {
        if (auto const index = out.pathFor("Contents/Resources/docSet.dsidx"))
            writeLookupIndex(*index, siteLookupEntries(loaded.set, report.paths));
    } catch (std::exception const& e) {
        report.errors.push_back(PageError{(output / "Contents/Resources/docSet.dsidx").string(), {}, e.what()});
    }
    commitSite(out, report);
    return report;
}

}  // namespace refpage
