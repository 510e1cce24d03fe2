// Reads fuzz input as a stream of small decisions. Reading past the end yields
// zeros and empty texts, so every input, however short, is a complete program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace refprop::fuzz {

class ByteReader {
public:
    ByteReader(std::uint8_t const* data, std::size_t size) noexcept : data_(data), size_(size) {}

    bool empty() const noexcept { return position_ >= size_; }

    /// The next byte, or 0 past the end.
    std::uint8_t byte() noexcept { return empty() ? 0 : data_[position_++]; }

    /// A choice in [0, count); count must be positive.
    std::size_t choose(std::size_t count) noexcept { return byte() % count; }

    bool flag() noexcept { return (byte() & 1U) != 0; }

    /// A 32-bit number, little-endian, biased towards small values: one byte in
    /// four announces a full-width number, the others give a number below 64.
    std::uint32_t number() noexcept {
        std::uint8_t const head = byte();
        if ((head & 3U) != 0) return head >> 2U;
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) value |= static_cast<std::uint32_t>(byte()) << (8 * i);
        return value;
    }

    /// A text of at most `maxUnits` UTF-16 code units; each unit is one byte
    /// (ASCII range) unless its byte has the high bit set, then two bytes.
    std::u16string text(std::size_t maxUnits) noexcept {
        std::size_t const length = choose(maxUnits + 1);
        std::u16string result;
        for (std::size_t i = 0; i < length && !empty(); ++i) {
            std::uint8_t const first = byte();
            if ((first & 0x80U) == 0) {
                result.push_back(static_cast<char16_t>(first));
            } else {
                result.push_back(static_cast<char16_t>(((first & 0x7FU) << 8U) | byte()));
            }
        }
        return result;
    }

private:
    std::uint8_t const* data_;
    std::size_t size_;
    std::size_t position_ = 0;
};

}  // namespace refprop::fuzz
