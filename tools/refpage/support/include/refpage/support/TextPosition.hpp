// Byte offsets of a text as the 1-based lines and byte columns that messages give.
#pragma once

#include <cstddef>
#include <string_view>

namespace refpage {

struct TextPosition {
    std::size_t line = 1;
    std::size_t column = 1;  ///< in bytes
};

/// Turns offsets into positions walking forward, so that offsets given in text order cost
/// one pass over the text in all; an offset before the last one restarts the walk.
/// The text is borrowed and must outlive the locator.
class Locator {
public:
    explicit Locator(std::string_view text) noexcept : text_(text) {}

    /// The position of byte `offset` (clamped to the text's size, which is a position too).
    TextPosition at(std::size_t offset) noexcept;

private:
    std::string_view text_;
    std::size_t offset_ = 0;
    std::size_t line_ = 1;
    std::size_t lineStart_ = 0;
};

/// The position of byte `offset` of `text`.
inline TextPosition positionOf(std::string_view text, std::size_t offset) noexcept {
    return Locator(text).at(offset);
}

}  // namespace refpage
