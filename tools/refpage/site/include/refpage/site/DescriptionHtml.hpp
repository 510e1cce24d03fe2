// A page's Description (CommonMark, parsed by format/Description.hpp) as HTML, written
// by walking cmark-gfm's tree with its iterator: no recursion, and nesting deeper than
// maxDescriptionDepth keeps its text but loses its elements. Page text only ever
// becomes text: raw HTML is shown escaped, and links and images are written only as
// the callbacks decide.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <refpage/format/Description.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// Elements nested deeper than this (blocks and inlines together) are left out; their text stays.
inline constexpr std::size_t maxDescriptionDepth = 48;

/// What the renderer asks of the page it renders for.
struct DescriptionLinks {
    /// A link's href (already relative to the page, percent-encoded), or nullopt to show its
    /// text only (unresolved or an unsafe scheme); `target` is the link as written.
    std::function<std::optional<std::string>(std::string_view target)> link;
    /// An image's src relative to the page, or nullopt when the file is not there: its alt
    /// text is shown instead.
    std::function<std::optional<std::string>(std::string_view target)> image;
    /// The ids of the description's headings, in order (from anchorsOf); missing ones get none.
    std::vector<std::string> headingIds;
    /// The level of the description's own heading: its "#" headings are one below it.
    int sectionLevel = 2;
};

/// The description as HTML: paragraphs, lists, block quotes, code blocks (`<pre
/// tabindex="0"><code class="language-X">` from the fence's first word), tables in a
/// scrolling `<div class="table-scroll" tabindex="0">`, headings with their ids and an
/// anchor link, emphasis, inline code, line breaks and rules.
std::string descriptionHtml(ParsedDescription const& description, DescriptionLinks const& links);

/// A one-line text of the page (a purpose, a title) read as CommonMark inlines: emphasis,
/// code and links as in a description, blocks flattened into the line (a fenced block's
/// text as inline code). Text without any markup character is only escaped.
std::string inlineHtml(std::string_view text, DescriptionLinks const& links);

}  // namespace refpage
