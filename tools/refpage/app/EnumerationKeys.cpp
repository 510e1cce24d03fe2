#include "EnumerationKeys.hpp"

#include <fmt/format.h>

#include <reference/glue/Enumerations.hpp>

namespace refpage {

namespace {

constexpr std::size_t lineWidth = 100;
constexpr std::string_view continuation = "\n    ";

}  // namespace

std::string enumerationKeys() {
    std::string out;
    for (auto const* info : reference::glue::allEnumerations()) {
        std::string line = fmt::format("  {}:", info->className);
        std::size_t lineStart = 0;
        char const* separator = " ";
        for (auto const& member : info->members) {
            std::string const item =
                fmt::format("{} ({})", member.key.empty() ? std::string_view("\"\"") : member.key, member.value);
            if (line.size() - lineStart + 2 + item.size() > lineWidth) {
                line += ',';
                line += continuation;
                lineStart = line.size() - continuation.size() + 1;
                separator = "";
            }
            line += separator + item;
            separator = ", ";
        }
        out += line + '\n';
    }
    return out;
}

}  // namespace refpage
