// Usage rules for the pages named on a command line.
#pragma once

#include <string>
#include <vector>

namespace refpage {

/// "-" more than once in `names` is a usage error: the message, or empty.
std::string stdinNamedTwice(std::vector<std::string> const& names);

}  // namespace refpage
