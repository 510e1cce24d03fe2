// The JSON under the page reader: nlohmann's event parser run over the text, the byte
// offset of every token it reports, byte order marks, and the parser's reasons made fit
// to print. Knows nothing of pages.
#pragma once

#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace refpage {

/// The mark a UTF-8 text may start with; skipped, its bytes still counted in positions.
inline constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

/// The encoding a byte order mark at the start of `text` names, or empty for none and UTF-8's.
std::string_view foreignEncoding(std::string_view text);

/// The parser's reason for an error without its own prefix and position, escaped and short.
std::string parseReason(std::string_view what);

/// Where the tokens the parser reports lie in the text. The parser reports a token once it
/// has read it; what it has taken so far is counted as it reads, and a token starts at the
/// first byte after the previous token that is not whitespace, "," or ":".
class TokenPositions {
public:
    /// `body` is the text the parser reads, `base` its offset in the page's text (a byte order mark's size).
    TokenPositions(std::string_view body, std::size_t base) noexcept : body_(body), base_(base) {}

    /// The counter the parser's iterator advances.
    std::size_t* counter() noexcept { return &taken_; }
    std::size_t taken() const noexcept { return taken_; }
    std::size_t base() const noexcept { return base_; }

    /// The page-text offset of the scalar or key just read; the next token starts after it.
    std::size_t tokenStart() noexcept {
        std::size_t at = prevEnd_;
        while (at < taken_ && std::string_view(" \t\n\r,:").find(body_[at]) != std::string_view::npos) ++at;
        prevEnd_ = taken_;
        return base_ + at;
    }
    /// The page-text offset of the "{" or "[" just read.
    std::size_t containerStart() noexcept {
        prevEnd_ = taken_;
        return base_ + taken_ - 1;
    }
    /// A "}" or "]" was just read.
    void containerEnd() noexcept { prevEnd_ = taken_; }
    /// The raw text from page-text offset `start` to where the parser is.
    std::string_view rawFrom(std::size_t start) const noexcept { return body_.substr(start - base_, base_ + taken_ - start); }
    /// True when the last byte the parser took is a NUL (where its lexer stops as at the end).
    bool atNul() const noexcept { return taken_ > 0 && taken_ <= body_.size() && body_[taken_ - 1] == '\0'; }

private:
    std::string_view body_;
    std::size_t base_;
    std::size_t taken_ = 0;    ///< bytes of body_ the parser has taken
    std::size_t prevEnd_ = 0;  ///< where the previous token ended, in body_
};

/// A pointer over the text that counts the bytes the parser takes from it.
class CountingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = char const*;
    using reference = char const&;

    CountingIterator(char const* at, std::size_t* taken) : at_(at), taken_(taken) {}
    reference operator*() const { return *at_; }
    CountingIterator& operator++() {
        ++at_;
        ++*taken_;
        return *this;
    }
    CountingIterator operator++(int) {
        CountingIterator const before = *this;
        ++*this;
        return before;
    }
    bool operator==(CountingIterator const& other) const { return at_ == other.at_; }
    bool operator!=(CountingIterator const& other) const { return at_ != other.at_; }

private:
    char const* at_;
    std::size_t* taken_;  ///< shared by every copy: the parser's copy is the one that moves
};

/// Runs the event parser over `body`, counting into `positions`, calling `handler`'s
/// nlohmann SAX events. Iterative: the parser keeps its own stack, and the handler bounds it.
template <class Handler>
void parseEvents(std::string_view body, TokenPositions& positions, Handler& handler) {
    CountingIterator const first(body.data(), positions.counter());
    CountingIterator const last(body.data() + body.size(), positions.counter());
    nlohmann::json::sax_parse(first, last, &handler, nlohmann::detail::input_format_t::json, true);
}

}  // namespace refpage
