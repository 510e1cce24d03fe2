// "Did you mean" for a misspelt word: the nearest of a few known words.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace refpage {

/// The candidate nearest to `word` by edit distance (a swap of two neighbours counts
/// as one edit), when it is within 1 edit for words of up to 3 bytes and 2 otherwise;
/// the first such on a tie; nullopt for words longer than 32 bytes or an exact match.
/// Time is bounded by 33 * 33 steps per candidate.
std::optional<std::string_view> nearestWord(std::string_view word, std::span<std::string_view const> candidates);

}  // namespace refpage
