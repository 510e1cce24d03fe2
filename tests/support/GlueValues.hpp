// Any property of any record class, assigned and read through the glue's
// property tables, so that one check can cover every class and every property.
#pragma once

#include <reference/glue/Properties.hpp>

namespace testvalues {

namespace glue = reference::glue;

/// Assigns `value` to `entry`'s property of `record` (of the entry's class) through its host setter.
void assign(glue::PropertyEntry const& entry, void* record, glue::HostValue const& value);

/// The cached host array of `entry`'s property of `record`; null for string and bool properties.
oxArray_tag const* cachedArray(glue::PropertyEntry const& entry, void const* record);

/// A value for `entry` that differs from a new record's and from that of every other entry of its class.
glue::HostValue distinctValue(glue::PropertyEntry const& entry);

/// True for the records that own object-array properties: their copies start with empty cache slots.
bool ownsRecords(glue::PropertyTable const& table);

/// True when `array` stands for `record`'s field of `entry` (an array property): setting the
/// field of a copy from it leaves the copy equal to the record.
template <class R>
bool agrees(glue::PropertyEntry const& entry, R const& record, oxArray_tag const* array) {
    R probe = record.copy();
    entry.arrays().set(&probe, array);
    return probe == record;
}

/// A record with every property assigned its distinct value.
template <class T>
T distinctRecord() {
    T record;
    for (glue::PropertyEntry const& entry : glue::tableOf<T>().entries) assign(entry, &record, distinctValue(entry));
    return record;
}

}  // namespace testvalues
