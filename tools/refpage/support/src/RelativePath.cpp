#include <algorithm>
#include <refpage/support/RelativePath.hpp>

namespace refpage {

std::optional<std::string> safeRelativePath(std::string_view path) {
    constexpr std::size_t maxSegment = 200;  // file systems allow 255 bytes per name
    if (path.empty() || path.front() == '/') return std::nullopt;
    for (unsigned char c : path)
        if (c < 0x20 || c == 0x7f || c == '\\' || c == '?' || c == ':' || c == '#') return std::nullopt;
    std::size_t start = 0;
    while (start <= path.size()) {
        std::size_t const end = std::min(path.find('/', start), path.size());
        std::string_view const segment = path.substr(start, end - start);
        if (segment.empty() || segment == "." || segment == ".." || segment.size() > maxSegment) return std::nullopt;
        start = end + 1;
    }
    return std::string(path);
}

}  // namespace refpage
