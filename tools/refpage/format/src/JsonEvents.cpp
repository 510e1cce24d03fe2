#include "JsonEvents.hpp"

#include <refpage/support/Escape.hpp>

namespace refpage {

std::string_view foreignEncoding(std::string_view text) {
    using namespace std::string_view_literals;
    if (text.starts_with("\xFF\xFE\0\0"sv)) return "UTF-32 (little-endian)";
    if (text.starts_with("\0\0\xFE\xFF"sv)) return "UTF-32 (big-endian)";
    if (text.starts_with("\xFF\xFE"sv)) return "UTF-16 (little-endian)";
    if (text.starts_with("\xFE\xFF"sv)) return "UTF-16 (big-endian)";
    return {};
}

std::string parseReason(std::string_view what) {
    std::size_t const column = what.find("column ");
    if (column != std::string_view::npos) {
        std::size_t const colon = what.find(": ", column);
        if (colon != std::string_view::npos) return excerpt(what.substr(colon + 2), 200);
    }
    std::size_t const bracket = what.find("] ");
    return excerpt(bracket == std::string_view::npos ? what : what.substr(bracket + 2), 200);
}

}  // namespace refpage
