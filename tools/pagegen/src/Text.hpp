// Made-up words, sentences and multi-line descriptions: text in the shape of
// reference pages, never taken from any.
#pragma once

#include "Random.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

namespace pagegen {

class Text {
public:
    /// Draws from `random`, which must outlive this object. `nonAscii` in parts per million of texts.
    Text(Random& random, std::uint32_t nonAscii) noexcept : random_(random), nonAscii_(nonAscii) {}

    /// A lowercase ASCII word of two to four syllables.
    std::string word();
    /// A word or two joined by '_', fit for a parameter or function name.
    std::string identifier();
    /// A word with its first letter upper case, fit for a class name.
    std::string className();
    /// A type description such as "int", "array_like" or "sequence of str".
    std::string typeName();
    /// One sentence of `words` words, capitalised, ending with '.', now and then a `code` span.
    std::string sentence(std::size_t words);
    /// Sentences adding up to about `chars` bytes, on one line.
    std::string sentences(std::size_t chars);
    /// About `chars` bytes of CommonMark in lines of at most about 75 characters: paragraphs parted
    /// by blank lines with emphasis, inline code and links from `link` (a name and an Href relative
    /// to the doc set's root), among them now and then a fenced Python example, a bulleted list with
    /// indented continuations, a table, or an image of `images/<stem>-<n>.png`.
    std::string description(std::size_t chars, std::function<std::pair<std::string, std::string>()> const& link,
                            std::string const& stem);
    /// A line of code calling `callee`, as "y = pkg.sort(a, 3)".
    std::string codeLine(std::string const& callee);
    /// A version number, as "1.17.0".
    std::string version();

private:
    /// A word that is not ASCII: CJK, Greek, a letter with a combining mark, or an emoji.
    std::string exoticWord();

    Random& random_;
    std::uint32_t nonAscii_;
};

}  // namespace pagegen
