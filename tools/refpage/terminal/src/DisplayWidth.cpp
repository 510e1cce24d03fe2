#include <utf8proc.h>

#include <algorithm>
#include <refpage/terminal/DisplayWidth.hpp>

namespace refpage {

namespace {

bool isRegionalIndicator(utf8proc_int32_t c) {
    return c >= 0x1F1E6 && c <= 0x1F1FF;
}

/// Walks `text` cluster by cluster; `visit(bytes, width)` returns false to stop.
/// Returns the bytes of the clusters visited to the end or up to the one refused.
template <class Visit>
std::size_t forEachCluster(std::string_view text, Visit visit) {
    auto const* const bytes = reinterpret_cast<utf8proc_uint8_t const*>(text.data());
    auto const size = static_cast<utf8proc_ssize_t>(text.size());
    utf8proc_ssize_t position = 0;
    utf8proc_ssize_t start = 0;
    std::size_t width = 0;
    std::size_t codePoints = 0;
    bool wide = false;  // an emoji presentation selector or a regional-indicator pair
    utf8proc_int32_t previous = -1;
    utf8proc_int32_t state = 0;
    auto close = [&] {
        std::size_t const columns = wide && codePoints > 1 ? std::max<std::size_t>(width, 2) : width;
        return visit(static_cast<std::size_t>(position - start), columns);
    };
    while (position < size) {
        utf8proc_int32_t c = -1;
        utf8proc_ssize_t length = utf8proc_iterate(bytes + position, size - position, &c);
        if (length < 0) {  // an invalid byte is a cluster of its own, one column wide
            length = 1;
            c = -1;
            state = 0;
        }
        bool const breaks = previous < 0 || c < 0 || utf8proc_grapheme_break_stateful(previous, c, &state);
        if (breaks && position > start) {
            if (!close()) return static_cast<std::size_t>(start);
            start = position;
            width = 0;
            codePoints = 0;
            wide = false;
        }
        width = std::max<std::size_t>(width, c < 0 ? 1 : static_cast<std::size_t>(std::max(0, utf8proc_charwidth(c))));
        wide = wide || c == 0xFE0F || isRegionalIndicator(c);
        ++codePoints;
        previous = c;
        position += length;
    }
    if (position > start && !close()) return static_cast<std::size_t>(start);
    return static_cast<std::size_t>(position);
}

}  // namespace

std::size_t displayWidth(std::string_view text) {
    std::size_t total = 0;
    forEachCluster(text, [&total](std::size_t, std::size_t width) {
        total += width;
        return true;
    });
    return total;
}

std::string_view fitWidth(std::string_view text, std::size_t width) {
    std::size_t used = 0;
    std::size_t const kept = forEachCluster(text, [&](std::size_t, std::size_t columns) {
        if (used + columns > width) return false;
        used += columns;
        return true;
    });
    return text.substr(0, kept);
}

}  // namespace refpage
