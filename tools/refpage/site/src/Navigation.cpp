#include <algorithm>
#include <map>
#include <refpage/format/Anchors.hpp>
#include <refpage/site/Navigation.hpp>
#include <refpage/support/Text.hpp>
#include <set>
#include <utility>

namespace refpage {

SiteNavigation::SiteNavigation(std::vector<SitePageSummary> pages)
    : pages_(std::move(pages)), packageOf_(pages_.size()), placeOf_(pages_.size()) {
    std::map<std::pair<int, std::string>, std::vector<std::size_t>> byPackage;
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        std::string const& package = pages_[i].package;
        byPackage[{package.empty() ? 1 : 0, asciiLowered(package) + '\0' + package}].push_back(i);
    }
    std::set<std::string> ids;
    for (auto& [key, members] : byPackage) {
        std::stable_sort(members.begin(), members.end(), [&](std::size_t a, std::size_t b) {
            auto const& x = pages_[a].title;
            auto const& y = pages_[b].title;
            return std::pair(asciiLowered(x), std::string_view(x)) < std::pair(asciiLowered(y), std::string_view(y));
        });
        std::string const& name = pages_[members.front()].package;
        std::string const base = "package-" + idFromText(name.empty() ? "other" : name, "other");
        std::string id = base;
        for (std::size_t n = 2; !ids.insert(id).second; ++n) id = base + "-" + std::to_string(n);
        std::size_t const index = packages_.size();
        for (std::size_t place = 0; place < members.size(); ++place) {
            packageOf_[members[place]] = index;
            placeOf_[members[place]] = place;
        }
        packages_.push_back({name.empty() ? std::string("Other pages") : name, std::move(id), std::move(members)});
    }
}

std::vector<std::size_t> SiteNavigation::sidebarOf(std::size_t page) const {
    auto const& members = packages_[packageOf(page)].pages;
    std::size_t const place = placeOf(page);
    std::size_t first = 0;
    std::size_t last = members.size();
    if (members.size() > sidebarPageLimit) {
        std::size_t const half = sidebarPageLimit / 2;
        first = place > half ? place - half : 0;
        last = std::min(members.size(), first + sidebarPageLimit);
        first = last - sidebarPageLimit;
    }
    return {members.begin() + static_cast<std::ptrdiff_t>(first), members.begin() + static_cast<std::ptrdiff_t>(last)};
}

}  // namespace refpage
