// Page paths as the commands take them: a file, or "-" for standard input.
#pragma once

#include <refpage/PageLoader.hpp>
#include <string>
#include <vector>

namespace refpage {

/// Loads the page file `name` ("-": standard input); an unreadable file is one error.
LoadResult loadNamedPage(std::string const& name, LoadOptions const& options);

/// "-" more than once in `names` is a usage error: the message, or empty.
std::string stdinNamedTwice(std::vector<std::string> const& names);

}  // namespace refpage
