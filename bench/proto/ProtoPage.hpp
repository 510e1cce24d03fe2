// A reference page as the protocol-buffer message of page.proto, strings in UTF-8.
#pragma once

#include "page.pb.h"

#include <reference/property/RefItem.hpp>

namespace bench {

/// The message holding the same fields as `page`, read through its native getters.
refprop::bench::RefItem protoOf(reference::property::RefItem const& page);

}  // namespace bench
