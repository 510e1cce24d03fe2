#include <fmt/format.h>

#include <refpage/format/PageError.hpp>
#include <refpage/support/Escape.hpp>

namespace refpage {

std::string PageError::describe(Severity severity) const {
    std::string text = source;
    if (line != 0) text += fmt::format(":{}:{}", line, column);
    text += fmt::format(": {}: {}", severity == Severity::Error ? "error" : "warning", message);
    if (!path.empty()) text += fmt::format(" [{}]", displayable(path));
    return text;
}

}  // namespace refpage
