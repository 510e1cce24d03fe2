// The one table from entity types to the roles of a Sphinx inventory:
//
//   entity type            role               priority
//   Function               py:function        1
//   Class                  py:class           1
//   Method, Constructor    py:method          1
//   Property               py:property        1   (Sphinx's :py:attr: resolves it, as it does py:attribute)
//   Package                py:module          0
//   every other type       std:label         -1   (hidden from search, as Sphinx lists labels)
//
// A domain other than "py" replaces "py" in the first five rows only: the object
// types keep their names (function, class, method, property, module), and labels
// stay in the std domain.
#pragma once

#include <cstdint>
#include <reference/property/RefEntityType.hpp>
#include <string>
#include <string_view>

namespace refpage {

inline constexpr std::string_view defaultInventoryDomain = "py";

struct SphinxRole {
    std::string domain;           ///< "py", the domain chosen, or "std" for labels
    std::string_view objectType;  ///< "function", "class", ..., "label"; static storage
    std::int64_t priority;        ///< as the table gives it

    /// "domain:objecttype".
    std::string text() const { return domain + ':' + std::string(objectType); }
};

/// The role of `type` in `domain` (a name that validInventoryDomain accepts); numbers that name
/// no member are labels.
SphinxRole sphinxRole(reference::property::RefEntityType::Value type,
                      std::string_view domain = defaultInventoryDomain);

/// True for a domain name an inventory can hold: an ASCII letter, then ASCII letters, digits,
/// '_', '-' or '.'; no ':' and no space, which would break the line it stands in.
bool validInventoryDomain(std::string_view domain) noexcept;

}  // namespace refpage
