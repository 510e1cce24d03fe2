#include <cctype>
#include <refpage/format/Links.hpp>

namespace refpage {

bool isExternalLink(std::string_view link) noexcept {
    if (link.starts_with('/')) return true;
    if (link.empty() || !std::isalpha(static_cast<unsigned char>(link.front()))) return false;
    for (char const c : link) {
        if (c == ':') return true;
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '+' && c != '-' && c != '.') return false;
    }
    return false;
}

std::string_view linkPagePart(std::string_view link) noexcept {
    link = link.substr(0, link.find('#'));
    while (link.starts_with("./")) link.remove_prefix(2);
    return link;
}

}  // namespace refpage
