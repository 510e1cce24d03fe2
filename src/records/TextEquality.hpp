// Equality of UTF-16 texts as the records define it: same length, same code units.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace reference::property::records {

/// Equal when the lengths match and the code units match as one block (no three-way compare,
/// which for char16_t walks the units one by one).
inline bool sameText(std::u16string const& left, std::u16string const& right) noexcept {
    return left.size() == right.size() &&
           std::memcmp(left.data(), right.data(), left.size() * sizeof(char16_t)) == 0;
}

/// Equal when the counts match, then every text in order by sameText.
inline bool sameTexts(std::vector<std::u16string> const& left, std::vector<std::u16string> const& right) noexcept {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), &sameText);
}

}  // namespace reference::property::records
