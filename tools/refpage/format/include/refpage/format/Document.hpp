// A page as parsed and checked against the property tables, before any host
// object exists: every key resolved to its table entry, every text in UTF-16,
// every enumeration value a number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <reference/glue/PropertyTable.hpp>
#include <string>
#include <variant>
#include <vector>

namespace refpage {

struct PageNode;

/// Numbers of an enumeration value; one for a scalar, any count for a JSON array.
using EnumerationValues = std::vector<std::uint32_t>;
using StringList = std::vector<std::u16string>;
/// Records of an object array, or the single record of a record property.
using NodeList = std::vector<PageNode>;

/// The value of one property, by the kind of its entry.
using NodeValue = std::variant<std::u16string, bool, EnumerationValues, StringList, NodeList>;

/// One key of a record: the entry it names and the value to assign through it.
struct Assignment {
    reference::glue::PropertyEntry const* entry = nullptr;  ///< never null
    NodeValue value;
    std::size_t offset = 0;  ///< byte offset of the value in the page text
};

/// One record: its class's table and the keys the page gave, in page order.
struct PageNode {
    reference::glue::PropertyTable const* table = nullptr;  ///< never null
    std::vector<Assignment> assignments;  ///< keys absent from the page keep the record's initial value
    std::size_t offset = 0;               ///< byte offset of the record's "{" in the page text
};

}  // namespace refpage
