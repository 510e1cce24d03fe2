// A Sphinx inventory (objects.inv, version 2) as this project reads and writes it:
// what a doc set offers to be linked to, one item per documented object, each
// at a URI relative to the root of the set's site.
#pragma once

#include <cstdint>
#include <refpage/format/PageError.hpp>
#include <reference/property/RefEntityType.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace refpage {

/// One object of a doc set to list: an entity of a page, or a member entry (a class
/// property) once the doc set has them. Texts are UTF-8.
struct InventoryEntry {
    std::string name;                                 ///< the name references use, as "numpy.sort"
    reference::property::RefEntityType::Value type;  ///< decides its role (SphinxRoles.hpp)
    std::string uri;  ///< relative to the site's root, percent-encoded, with its "#anchor" when it has one
};

/// One line of an inventory, as read: `name domain:role priority uri displayName`.
struct InventoryItem {
    std::string name;         ///< may hold spaces (labels do)
    std::string role;         ///< "domain:objecttype", as "py:function"; always holds a ':'
    std::int64_t priority;    ///< 1 ordinary, 0 important, -1 hidden from search (labels)
    std::string uri;          ///< relative to the inventory's base URL; a final '$' already replaced by the name
    std::string displayName;  ///< "-" already replaced by the name
};

struct Inventory {
    std::string project;               ///< from "# Project: ", as written
    std::string version;               ///< from "# Version: ", as written
    std::vector<InventoryItem> items;  ///< in file order
};

/// An inventory that cannot be read: the error names the file and says what is wrong and where.
class InventoryError : public std::runtime_error {
public:
    explicit InventoryError(PageError where) : std::runtime_error(where.describe()), where_(std::move(where)) {}
    /// The file (as named) and the message, for printing with the tool's other errors.
    PageError const& where() const noexcept { return where_; }

private:
    PageError where_;
};

}  // namespace refpage
