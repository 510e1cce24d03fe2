#include <fmt/format.h>

#include <algorithm>
#include <refpage/format/PageError.hpp>
#include <refpage/support/Escape.hpp>

namespace refpage {

std::string PageError::describe(std::string_view severity) const {
    std::string text = source;
    if (line != 0) text += fmt::format(":{}:{}", line, column);
    text += fmt::format(": {}: {}", severity, message);
    if (!path.empty()) text += fmt::format(" [{}]", displayable(path));
    return text;
}

TextPosition positionOf(std::string_view text, std::size_t offset) {
    std::string_view const before = text.substr(0, std::min(offset, text.size()));
    std::size_t const newline = before.rfind('\n');
    std::size_t const lineStart = newline == std::string_view::npos ? 0 : newline + 1;
    auto const lines = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    return {lines + 1, before.size() - lineStart + 1};
}

}  // namespace refpage
