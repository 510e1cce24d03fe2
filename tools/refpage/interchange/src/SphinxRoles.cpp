#include <cctype>
#include <refpage/interchange/SphinxRoles.hpp>

namespace refpage {

using reference::property::RefEntityType;

SphinxRole sphinxRole(RefEntityType::Value type, std::string_view domain) {
    std::string const chosen(domain);
    switch (type) {
        case RefEntityType::Function: return {chosen, "function", 1};
        case RefEntityType::Class: return {chosen, "class", 1};
        case RefEntityType::Method:
        case RefEntityType::Constructor: return {chosen, "method", 1};
        case RefEntityType::Property: return {chosen, "property", 1};
        case RefEntityType::Package: return {chosen, "module", 0};
        default: return {"std", "label", -1};
    }
}

bool validInventoryDomain(std::string_view domain) noexcept {
    if (domain.empty() || !std::isalpha(static_cast<unsigned char>(domain.front()))) return false;
    for (char const c : domain)
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_' && c != '-' && c != '.') return false;
    return true;
}

}  // namespace refpage
