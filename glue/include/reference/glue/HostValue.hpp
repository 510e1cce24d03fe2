// The value of one host property, whatever its kind.
#pragma once

#include <reference/property/HostArray.hpp>
#include <string>
#include <variant>

namespace reference::glue {

/// A text (string properties), a flag (the bool property) or a counted host array
/// (enumeration objects, string lists, object arrays and single records).
using HostValue = std::variant<std::u16string, bool, property::HostArrayPtr>;

}  // namespace reference::glue
