// Usage rules for the pages named on a command line.
#pragma once

#include <string>
#include <vector>

namespace refpage {

/// "-" more than once in `names` is a usage error: true when it is, after printing
/// "refpage: standard input (-) can be named only once" on standard error.
bool refuseStdinNamedTwice(std::vector<std::string> const& names);

}  // namespace refpage
