// The accepted keys of every enumeration, as the glue knows them, for --help.
#pragma once

#include <string>

namespace refpage {

/// One line per enumeration class: its name, then each member's key (a quoted empty
/// key for a member that has one) and number, in number order.
std::string enumerationKeys();

}  // namespace refpage
