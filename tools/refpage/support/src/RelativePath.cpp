#include <algorithm>
#include <refpage/support/RelativePath.hpp>

namespace refpage {

bool relativePathTooLong(std::string_view path) noexcept {
    if (path.size() > maxRelativePathBytes) return true;
    for (std::size_t start = 0; start <= path.size();) {
        std::size_t const end = std::min(path.find('/', start), path.size());
        if (end - start > maxRelativePathSegmentBytes) return true;
        start = end + 1;
    }
    return false;
}

std::optional<std::string> safeRelativePath(std::string_view path) {
    if (path.empty() || path.front() == '/' || relativePathTooLong(path)) return std::nullopt;
    for (unsigned char c : path)
        if (c < 0x20 || c == 0x7f || c == '\\' || c == '?' || c == ':' || c == '#') return std::nullopt;
    std::size_t start = 0;
    while (start <= path.size()) {
        std::size_t const end = std::min(path.find('/', start), path.size());
        std::string_view const segment = path.substr(start, end - start);
        if (segment.empty() || segment == "." || segment == "..") return std::nullopt;
        start = end + 1;
    }
    return std::string(path);
}

std::string percentEncode(std::string_view text, bool fragment) {
    static constexpr char hex[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(text.size());
    for (unsigned char c : text) {
        bool const plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
                           c == '.' || c == '_' || c == '~' || (c == '/' && !fragment);
        if (plain) {
            out += static_cast<char>(c);
        } else {
            out += '%';
            out += hex[c >> 4];
            out += hex[c & 15];
        }
    }
    return out;
}

}  // namespace refpage
