// Pages as the commands take them: a file, "-" for standard input, or an entry of a walk.
#pragma once

#include <refpage/format/Loader.hpp>
#include <refpage/format/Inputs.hpp>
#include <string>
#include <vector>

namespace refpage {

/// Reads and loads `entry`. An entry that cannot be read, or that runs out of memory
/// while it is read or loaded, is one error ("out of memory") naming its source.
LoadResult loadEntry(PageEntry const& entry, LoadOptions const& options);

/// loadEntry of the page file `name` ("-": standard input).
LoadResult loadNamedPage(std::string const& name, LoadOptions const& options);

/// "-" more than once in `names` is a usage error: the message, or empty.
std::string stdinNamedTwice(std::vector<std::string> const& names);

}  // namespace refpage
