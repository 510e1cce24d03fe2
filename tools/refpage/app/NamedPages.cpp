#include "NamedPages.hpp"

#include <algorithm>
#include <refpage/format/Inputs.hpp>

namespace refpage {

std::string stdinNamedTwice(std::vector<std::string> const& names) {
    if (std::count(names.begin(), names.end(), stdinPath) < 2) return {};
    return "standard input (-) can be named only once";
}

}  // namespace refpage
