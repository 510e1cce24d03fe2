#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm-extension_api.h>
#include <cmark-gfm.h>

#include <mutex>
#include <new>
#include <refpage/format/Description.hpp>

namespace refpage {

namespace {

/// Iterates a tree without recursion; frees the iterator on scope exit.
class Iterator {
public:
    explicit Iterator(cmark_node* root) : iter_(cmark_iter_new(root)) {
        if (!iter_) throw std::bad_alloc();
    }
    Iterator(Iterator const&) = delete;
    Iterator& operator=(Iterator const&) = delete;
    ~Iterator() { cmark_iter_free(iter_); }

    /// The next event; CMARK_EVENT_DONE at the end.
    cmark_event_type next() noexcept { return cmark_iter_next(iter_); }
    cmark_node* node() const noexcept { return cmark_iter_get_node(iter_); }

private:
    cmark_iter* iter_;
};

/// The start of `node`, or of the nearest block around it that has one (inlines may have none).
TextPosition startOf(cmark_node* node) {
    for (cmark_node* at = node; at; at = cmark_node_parent(at)) {
        int const line = cmark_node_get_start_line(at);
        int const column = cmark_node_get_start_column(at);
        if (line > 0) return {static_cast<std::size_t>(line), static_cast<std::size_t>(column > 0 ? column : 1)};
    }
    return {};
}

cmark_node* literalDocument(std::string_view text) {
    cmark_node* document = cmark_node_new(CMARK_NODE_DOCUMENT);
    cmark_node* block = cmark_node_new(CMARK_NODE_CODE_BLOCK);
    if (!document || !block) throw std::bad_alloc();
    std::string const literal(text);
    cmark_node_set_literal(block, literal.c_str());
    cmark_node_append_child(document, block);
    return document;
}

}  // namespace

void ParsedDescription::Free::operator()(cmark_node* node) const noexcept { cmark_node_free(node); }

ParsedDescription::ParsedDescription(std::unique_ptr<cmark_node, Free> root, bool commonMark) noexcept
    : root_(std::move(root)), commonMark_(commonMark) {}
ParsedDescription::ParsedDescription(ParsedDescription&&) noexcept = default;
ParsedDescription& ParsedDescription::operator=(ParsedDescription&&) noexcept = default;
ParsedDescription::~ParsedDescription() = default;

ParsedDescription ParsedDescription::parse(std::string_view markdown) {
    if (markdown.size() > maxCommonMarkBytes)
        return ParsedDescription(std::unique_ptr<cmark_node, Free>(literalDocument(markdown)), false);
    // Registering the extensions writes cmark-gfm's global registry: once, before any parse.
    static std::once_flag registered;
    std::call_once(registered, [] { cmark_gfm_core_extensions_ensure_registered(); });
    std::unique_ptr<cmark_parser, void (*)(cmark_parser*)> parser(cmark_parser_new(CMARK_OPT_VALIDATE_UTF8),
                                                                 cmark_parser_free);
    if (!parser) throw std::bad_alloc();
    if (cmark_syntax_extension* table = cmark_find_syntax_extension("table"))
        cmark_parser_attach_syntax_extension(parser.get(), table);
    cmark_parser_feed(parser.get(), markdown.data(), markdown.size());
    cmark_node* document = cmark_parser_finish(parser.get());
    if (!document) throw std::bad_alloc();
    return ParsedDescription(std::unique_ptr<cmark_node, Free>(document), true);
}

std::vector<DescriptionReference> ParsedDescription::references() const {
    std::vector<DescriptionReference> found;
    Iterator iterator(root_.get());
    for (cmark_event_type event; (event = iterator.next()) != CMARK_EVENT_DONE;) {
        cmark_node* node = iterator.node();
        if (event != CMARK_EVENT_ENTER) continue;
        cmark_node_type const type = cmark_node_get_type(node);
        if (type != CMARK_NODE_LINK && type != CMARK_NODE_IMAGE) continue;
        char const* url = cmark_node_get_url(node);
        found.push_back({type == CMARK_NODE_IMAGE ? DescriptionReference::Kind::Image : DescriptionReference::Kind::Link,
                         url ? url : "", plainTextOf(node), startOf(node)});
    }
    return found;
}

std::string plainTextOf(cmark_node* node) {
    std::string text;
    Iterator iterator(node);
    for (cmark_event_type event; (event = iterator.next()) != CMARK_EVENT_DONE;) {
        if (event != CMARK_EVENT_ENTER) continue;
        cmark_node* at = iterator.node();
        switch (cmark_node_get_type(at)) {
            case CMARK_NODE_TEXT:
            case CMARK_NODE_CODE:
                if (char const* literal = cmark_node_get_literal(at)) text += literal;
                break;
            case CMARK_NODE_SOFTBREAK:
            case CMARK_NODE_LINEBREAK: text += ' '; break;
            default: break;
        }
    }
    return text;
}

}  // namespace refpage
