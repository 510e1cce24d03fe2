// Writing a page as canonical JSON: every key in table order, one-space indent,
// UTF-8 kept as is, enumeration members by their keys ("usage") and numbers that
// name no member (or a member whose key is empty) as numbers.
#pragma once

#include <ovrin/ocos.hpp>
#include <cstddef>
#include <refpage/support/FunctionRef.hpp>
#include <string>
#include <string_view>

namespace refpage {

/// The page held by a RefItem host object, read through the host getters and written
/// straight to text (no JSON value of the page is built). Throws utf8::exception for a
/// text holding an unpaired surrogate. `sizeHint` is reserved first (say, the size of the
/// text the page was loaded from), so that a page about that size is written without regrowing.
std::string pageText(oxArray_tag const* page, std::size_t sizeHint = 0);

/// The same text handed to `sink` in pieces of about 64 KiB as it is written, so that no more
/// than a piece of it is held at once. The pieces joined are exactly pageText(page).
void writePageText(oxArray_tag const* page, FunctionRef<void(std::string_view)> sink);

}  // namespace refpage
