// A page's Description as CommonMark with GitHub-flavoured tables: parsed once here,
// for the check (the links and images it holds) and for the site (the tree it renders).
// Parsing is linear in practice and bounded: text longer than maxCommonMarkBytes is
// not parsed and stands as one literal block.
#pragma once

#include <cstddef>
#include <memory>
#include <refpage/support/TextPosition.hpp>
#include <string>
#include <string_view>
#include <vector>

struct cmark_node;  // cmark-gfm's node; callers that walk the tree include <cmark-gfm.h>

namespace refpage {

/// Descriptions longer than this many bytes are not parsed as CommonMark (see ParsedDescription).
inline constexpr std::size_t maxCommonMarkBytes = 32 * 1024;

/// One link or image written in a description: `[text](target)`, `![alt](target)`, an
/// autolink, or a reference definition's use.
struct DescriptionReference {
    enum class Kind { Link, Image } kind = Kind::Link;
    std::string target;     ///< the destination as written (entities and escapes decoded by CommonMark)
    std::string text;       ///< the link's text or the image's alt text, markup removed
    TextPosition position;  ///< where it starts in the description (1-based line, byte column)
};

/// A description parsed into cmark-gfm's tree; owns the tree. Move-only.
class ParsedDescription {
public:
    /// Parses `markdown` (UTF-8). Never fails: CommonMark has no invalid input. Text over
    /// maxCommonMarkBytes becomes a document holding one code block of the text as it is.
    static ParsedDescription parse(std::string_view markdown);

    ParsedDescription(ParsedDescription&&) noexcept;
    ParsedDescription& operator=(ParsedDescription&&) noexcept;
    ~ParsedDescription();

    /// The document node; owned by this object, valid while it lives. Never null.
    cmark_node* root() const noexcept { return root_.get(); }

    /// False when the text was too long to parse and stands as a literal block.
    bool isCommonMark() const noexcept { return commonMark_; }

    /// Every link and image, in text order. An image's alt text keeps the text of its inlines.
    std::vector<DescriptionReference> references() const;

private:
    struct Free {
        void operator()(cmark_node* node) const noexcept;
    };
    ParsedDescription(std::unique_ptr<cmark_node, Free> root, bool commonMark) noexcept;

    std::unique_ptr<cmark_node, Free> root_;
    bool commonMark_ = true;
};

/// The plain text of the inlines under `node` (text, code and the alt text of images;
/// breaks become spaces), for headings' ids and image alt text. Walks without recursion.
std::string plainTextOf(cmark_node* node);

}  // namespace refpage
