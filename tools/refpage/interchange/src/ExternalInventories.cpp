#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <refpage/interchange/ExternalInventories.hpp>
#include <refpage/support/Escape.hpp>

namespace refpage {

namespace {

/// True for "scheme://" as RFC 3986 spells a scheme: a letter, then letters, digits, '+', '-' or '.'.
bool isAbsoluteUrl(std::string_view url) {
    std::size_t const colon = url.find("://");
    if (colon == std::string_view::npos || colon == 0 || !std::isalpha(static_cast<unsigned char>(url.front())))
        return false;
    return std::all_of(url.begin(), url.begin() + static_cast<std::ptrdiff_t>(colon), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '+' || c == '-' || c == '.';
    });
}

}  // namespace

void ExternalInventories::add(std::string baseUrl, Inventory const& inventory, std::string source) {
    if (!baseUrl.ends_with('/')) baseUrl += '/';
    auto site = std::find_if(sites_.begin(), sites_.end(), [&](Site const& s) { return s.baseUrl == baseUrl; });
    if (site == sites_.end()) {
        sites_.push_back(Site{std::move(baseUrl), std::move(source), {}, {}});
        site = sites_.end() - 1;
    }
    for (auto const& item : inventory.items) {
        site->uris.insert(item.uri);
        site->pages.insert(item.uri.substr(0, item.uri.find('#')));
    }
    std::stable_sort(sites_.begin(), sites_.end(),
                     [](Site const& a, Site const& b) { return a.baseUrl.size() > b.baseUrl.size(); });
}

ExternalInventories::Resolution ExternalInventories::resolve(std::string_view url) const {
    for (auto const& site : sites_) {
        std::string_view const base = site.baseUrl;
        Resolution resolution{Verdict::Found, base, site.source};
        if (url == base.substr(0, base.size() - 1)) return resolution;
        if (!url.starts_with(base)) continue;
        std::string_view rest = url.substr(base.size());
        if (rest.ends_with('#')) rest.remove_suffix(1);
        bool const found = rest.empty() ||
                           (rest.find('#') == std::string_view::npos ? site.pages.contains(std::string(rest))
                                                                       : site.uris.contains(std::string(rest)));
        if (!found) resolution.verdict = Verdict::Missing;
        return resolution;
    }
    return {};
}

std::optional<InventoryOption> parseInventoryOption(std::string_view option, std::string& error) {
    std::size_t const equals = option.find('=');
    if (equals == std::string_view::npos) {
        error = fmt::format("--inventory {}: expected URL=FILE", refpage::quoted(option));
        return std::nullopt;
    }
    InventoryOption parsed{std::string(option.substr(0, equals)), std::string(option.substr(equals + 1))};
    if (!isAbsoluteUrl(parsed.baseUrl)) {
        error = fmt::format("--inventory {}: the URL {} is not absolute (\"https://...\")", refpage::quoted(option),
                            refpage::quoted(parsed.baseUrl));
        return std::nullopt;
    }
    if (parsed.file.empty()) {
        error = fmt::format("--inventory {}: no FILE after '='", refpage::quoted(option));
        return std::nullopt;
    }
    return parsed;
}

}  // namespace refpage
