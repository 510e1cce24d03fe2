#include <refpage/support/Suggestion.hpp>

#include <algorithm>
#include <array>
#include <cstddef>

namespace refpage {

namespace {

constexpr std::size_t longestWord = 32;

/// Optimal-string-alignment distance of two words of at most longestWord bytes.
std::size_t editDistance(std::string_view a, std::string_view b) {
    using Row = std::array<std::size_t, longestWord + 1>;
    std::array<Row, longestWord + 1> d{};
    for (std::size_t i = 0; i <= a.size(); ++i) d[i][0] = i;
    for (std::size_t j = 0; j <= b.size(); ++j) d[0][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        for (std::size_t j = 1; j <= b.size(); ++j) {
            std::size_t const substitution = a[i - 1] == b[j - 1] ? 0 : 1;
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + substitution});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
        }
    }
    return d[a.size()][b.size()];
}

}  // namespace

std::optional<std::string_view> nearestWord(std::string_view word, std::span<std::string_view const> candidates) {
    if (word.size() > longestWord) return std::nullopt;
    std::size_t const limit = word.size() <= 3 ? 1 : 2;
    std::optional<std::string_view> best;
    std::size_t bestDistance = limit + 1;
    for (std::string_view const candidate : candidates) {
        if (candidate.size() > longestWord || candidate.empty()) continue;
        std::size_t const distance = editDistance(word, candidate);
        if (distance == 0) return std::nullopt;
        if (distance < bestDistance) {
            best = candidate;
            bestDistance = distance;
        }
    }
    return best;
}

}  // namespace refpage
