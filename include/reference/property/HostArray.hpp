// The host array handle that every record keeps beside a field the host reads
// as an array.
#pragma once

#include <ovrin/array.hpp>

#include <boost/intrusive_ptr.hpp>

namespace reference::property {

/// One counted reference to a host array, released with the handle; empty until filled.
using HostArrayPtr = boost::intrusive_ptr<oxArray_tag const>;

}  // namespace reference::property
