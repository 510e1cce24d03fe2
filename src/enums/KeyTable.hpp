// The sorted key table of an enumeration class: key text to value, built once at load.
#pragma once

#include <boost/container/flat_map.hpp>

#include <cstddef>
#include <functional>
#include <string_view>
#include <utility>

namespace reference::property::enums {

/// Keys view string literals, so the table owns no text.
template <class Value>
using KeyTable = boost::container::flat_map<std::string_view, Value, std::less<void>>;

/// The table of `pairs`, in that order, sorted by the unique range insertion.
template <class Value, std::size_t N>
KeyTable<Value> buildKeyTable(std::pair<std::string_view, Value> const (&pairs)[N]) {
    KeyTable<Value> table;
    table.insert(std::begin(pairs), std::end(pairs));
    return table;
}

/// The value of the exact key `key`, `fallback` for any other text. Never allocates.
template <class Value>
Value findKey(KeyTable<Value> const& table, std::string_view key, Value fallback) noexcept {
    auto const found = table.lower_bound(key);
    return found == table.end() || found->first != key ? fallback : found->second;
}

}  // namespace reference::property::enums
