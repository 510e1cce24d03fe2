// The words of the page schema: what each record, key and enumeration class means,
// for authors reading them in an editor. Keys and types come from the glue's tables
// (PageSchema.hpp); only these texts are written by hand, and the tests check that
// every key of every table has one and that no text names a key the tables lack.
#pragma once

#include <span>
#include <string_view>

namespace refpage {

struct KeyDescription {
    std::string_view record;  ///< the record class ("Input"), or empty for every record without its own row
    std::string_view word;    ///< the key ("Name")
    std::string_view text;
};

/// Every key description, records' own rows first.
std::span<KeyDescription const> keyDescriptions() noexcept;

/// What key `word` of record class `record` holds: the record's own row, else the shared
/// row of `word`, else empty.
std::string_view keyDescription(std::string_view record, std::string_view word) noexcept;

/// What a record class is ("Input": "An input argument."); empty for an unknown class.
std::string_view recordDescription(std::string_view record) noexcept;

/// What an enumeration class says ("SyntaxType": ...); empty for an unknown class.
std::string_view enumerationDescription(std::string_view className) noexcept;

}  // namespace refpage
