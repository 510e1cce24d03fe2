// One digest of a page's values, whether the host holds the page or a parsed text does:
// equal values give equal digests, so the check compares a written text with the page it
// came from without keeping both.
#pragma once

#include <cstddef>
#include <ovrin/ocos.hpp>
#include <refpage/format/Document.hpp>

namespace refpage {

/// The digest of every value of the page a RefItem host object holds, read through the host getters.
std::size_t valuesDigest(oxArray_tag const* page);

/// The digest of every value of a parsed page, as it would be assigned.
std::size_t valuesDigest(PageNode const& root);

}  // namespace refpage
