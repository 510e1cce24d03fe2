// Messages on standard error and the pages named on the command line.
#pragma once

#include <refpage/PageError.hpp>
#include <refpage/PageLoader.hpp>
#include <string>
#include <vector>

namespace refpage {

/// Prints each error on stderr, one line each, prefixed by `prefix`.
void printErrors(PageErrors const& errors, char const* prefix);

/// Loads the page file `name` ("-": standard input).
LoadResult loadNamedPage(std::string const& name, LoadOptions const& options);

/// "-" more than once in `names` is a usage error: the message, or empty.
std::string stdinNamedTwice(std::vector<std::string> const& names);

}  // namespace refpage
