#include <fmt/format.h>

#include <refpage/PageError.hpp>

namespace refpage {

std::string PageError::describe() const {
    if (line != 0) return fmt::format("{}:{}:{}: {}", source, line, column, message);
    if (path.empty()) return fmt::format("{}: {}", source, message);
    return fmt::format("{}: {}: {}", source, path, message);
}

}  // namespace refpage
