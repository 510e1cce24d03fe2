// Writing a Sphinx inventory (objects.inv, version 2) of a doc set, so that Sphinx
// projects (intersphinx) and other tools that read inventories can link to its site.
//
// Layout: four header lines, then one zlib stream (level 9, as Sphinx writes it) of
// lines "name domain:role priority uri displayName\n". A uri ending in the name, when
// the name is longer than one byte, ends in "$" instead; a display name equal to the
// name is "-". Lines are sorted as Sphinx sorts its own: by domain, then name, role
// and uri, bytewise (code point order), and repeated lines are written once. The same
// entries in any order give the same bytes.
#pragma once

#include <refpage/interchange/Inventory.hpp>
#include <refpage/interchange/SphinxRoles.hpp>
#include <span>
#include <string>
#include <vector>

namespace refpage {

struct InventoryOptions {
    std::string project;                                    ///< "# Project: " line; whitespace runs become one space
    std::string version;                                    ///< "# Version: " line; likewise
    std::string domain = std::string(defaultInventoryDomain);  ///< validInventoryDomain; see SphinxRoles.hpp
};

/// The whole objects.inv file of `entries`. Entries with an empty name are left out. Names
/// and display names have each whitespace run made one space and no space at either end
/// (a line break would end the line); spaces, control characters and a final '$' in a uri
/// are percent-encoded. Throws std::invalid_argument for a domain validInventoryDomain refuses.
std::string inventoryBytes(std::span<InventoryEntry const> entries, InventoryOptions const& options);

}  // namespace refpage
