// Reading and writing any property of any host object by its word, as the host
// does: the object's class names its table, the table names the accessor.
#pragma once

#include <ovrin/ocos.hpp>
#include <reference/glue/HostValue.hpp>
#include <reference/glue/PropertyTable.hpp>
#include <string_view>

namespace reference::glue {

/// The table of `object`'s class. Throws std::invalid_argument for a class with no table.
PropertyTable const& tableOf(ocos::COSInterface const& object);

/// The native record `object` wraps, checked against the table's native type; borrowed from the object.
void* recordOf(ocos::COSInterface const& object, PropertyTable const& table);

/// The value of property `word` through the record's host getter. Strings are copied;
/// arrays come with a reference of their own. Throws std::out_of_range for an unknown word.
HostValue getProperty(ocos::COSInterface const& object, std::string_view word);

/// Assigns property `word` through the record's host setter. Throws std::out_of_range for
/// an unknown word and std::invalid_argument for a value of the wrong kind; the library's
/// own errors (RequireScalar, host errors) pass through.
void setProperty(ocos::COSInterface const& object, std::string_view word, HostValue const& value);

/// The host object held by a 1-by-1 object array, with a reference of its own.
ocos::COSInterfacePtr objectOf(oxArray_tag const* array);

/// A new host object of `table`'s class holding a default record, constructed through
/// the host's public client. The caller owns the one reference of the 1-by-1 array.
property::HostArrayPtr constructObject(PropertyTable const& table);

}  // namespace reference::glue
