#include <fmt/format.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <refpage/site/DocsetBundle.hpp>
#include <refpage/site/Html.hpp>
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

SiteReport buildDocset(std::span<SitePageInput const> pages, SiteLinkResolver const& resolve,
                       std::filesystem::path const& output, std::string_view name, SiteOptions site,
                       DocsetIndexWriter const& writeIndex) {
    auto const contents = output / "Contents";
    auto const resources = contents / "Resources";
    site.output = resources / "Documents";
    if (site.title == SiteOptions{}.title) site.title = std::string(name);
    site.docset = true;
    SiteReport report = buildSite(pages, resolve, site);
    auto write = [&](std::filesystem::path const& file, std::string const& text) {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out << text;
        out.close();
        if (!out) report.errors.push_back({file.string(), "", "cannot write"});
    };
    write(contents / "Info.plist", docsetInfoPlist(name, site.baseUrl));
    for (auto const& icon : docsetIcons()) write(output / icon.file, std::string(icon.bytes));
    nlohmann::json const meta{{"name", std::string(name)}, {"title", std::string(name)}};
    write(output / "meta.json", meta.dump(1, ' ', true, nlohmann::json::error_handler_t::replace) + "\n");
    writeIndex(resources / "docSet.dsidx", report.paths, report.errors);
    return report;
}

}  // namespace refpage
