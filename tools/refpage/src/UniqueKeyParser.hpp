// Parsing JSON text into a Json value while noticing keys repeated within one
// object, which a plain parse would resolve silently (the last one wins).
#pragma once

#include <refpage/Json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// A key given twice in one object.
struct DuplicateKey {
    std::string path;  ///< JSON pointer of the second occurrence
    std::string key;   ///< the key as written, unescaped
};

/// Parses `text` as one JSON value, appending every repeated key to `duplicates`
/// (the later value replaces the earlier one in the result). Malformed text throws
/// the same Json::parse_error / Json::exception as Json::parse.
Json parseUniqueKeys(std::string_view text, std::vector<DuplicateKey>& duplicates);

}  // namespace refpage
