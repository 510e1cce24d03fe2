#include "NamedPages.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <refpage/format/Inputs.hpp>

namespace refpage {

bool refuseStdinNamedTwice(std::vector<std::string> const& names) {
    if (std::count(names.begin(), names.end(), stdinPath) < 2) return false;
    fmt::print(stderr, "refpage: standard input (-) can be named only once\n");
    return true;
}

}  // namespace refpage
