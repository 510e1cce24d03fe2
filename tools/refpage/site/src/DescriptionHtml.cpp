#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <refpage/site/DescriptionHtml.hpp>
#include <refpage/site/Html.hpp>

namespace refpage {

namespace {

std::string_view literalOf(cmark_node* node) {
    char const* literal = cmark_node_get_literal(node);
    return literal ? std::string_view(literal) : std::string_view();
}

/// The fence's first word when it is a plain language name, for a class.
std::string languageOf(cmark_node* node) {
    char const* info = cmark_node_get_fence_info(node);
    std::string language;
    for (char const* at = info; at && *at && *at != ' ' && *at != '\t'; ++at) {
        char const c = *at;
        bool const plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
                           c == '_' || c == '+' || c == '.' || c == '#';
        if (!plain || language.size() >= 40) return {};
        language += c;
    }
    return language;
}

/// True when the paragraph's list item is in a tight list: its <p> is left out.
bool inTightList(cmark_node* paragraph) {
    cmark_node* item = cmark_node_parent(paragraph);
    if (!item || cmark_node_get_type(item) != CMARK_NODE_ITEM) return false;
    cmark_node* list = cmark_node_parent(item);
    return list && cmark_node_get_list_tight(list);
}

std::string_view extensionType(cmark_node* node) {
    if ((cmark_node_get_type(node) & CMARK_NODE_TYPE_MASK) == CMARK_NODE_TYPE_INLINE) return {};
    switch (cmark_node_get_type(node)) {
        case CMARK_NODE_DOCUMENT: case CMARK_NODE_BLOCK_QUOTE: case CMARK_NODE_LIST: case CMARK_NODE_ITEM:
        case CMARK_NODE_CODE_BLOCK: case CMARK_NODE_HTML_BLOCK: case CMARK_NODE_CUSTOM_BLOCK:
        case CMARK_NODE_PARAGRAPH: case CMARK_NODE_HEADING: case CMARK_NODE_THEMATIC_BREAK:
        case CMARK_NODE_FOOTNOTE_DEFINITION:
            return {};
        default: break;
    }
    char const* name = cmark_node_get_type_string(node);
    return name ? std::string_view(name) : std::string_view();
}

class Writer {
public:
    Writer(DescriptionLinks const& links, bool inlineOnly) : links_(links), inline_(inlineOnly) {}

    void enter(cmark_node* node, cmark_iter* iter) {
        std::string close;
        ++depth_;
        bool const shown = depth_ <= maxDescriptionDepth;
        if (inline_ && (cmark_node_get_type(node) & CMARK_NODE_TYPE_MASK) != CMARK_NODE_TYPE_INLINE) {
            // Blocks flattened into one line: code keeps its markup, every other block its text.
            if (cmark_node_get_type(node) == CMARK_NODE_CODE_BLOCK) {
                out += "<code>" + escapeHtml(literalOf(node)) + "</code> ";
            } else if (cmark_node_get_type(node) == CMARK_NODE_HTML_BLOCK) {
                out += escapeHtml(literalOf(node));
            } else if (!out.empty() && out.back() != ' ') {
                out += ' ';
            }
            if (cmark_node_get_type(node) == CMARK_NODE_LIST)
                numbers_.push_back(cmark_node_get_list_type(node) == CMARK_ORDERED_LIST ? cmark_node_get_list_start(node)
                                                                                       : -1);
            if (cmark_node_get_type(node) == CMARK_NODE_ITEM && !numbers_.empty() && numbers_.back() >= 0)
                out += std::to_string(numbers_.back()++) + ". ";
            closers_.push_back(" ");
            return;
        }
        switch (cmark_node_get_type(node)) {
            case CMARK_NODE_TEXT: out += escapeHtml(literalOf(node)); break;
            case CMARK_NODE_SOFTBREAK: out += '\n'; break;
            case CMARK_NODE_LINEBREAK: out += shown ? "<br>\n" : "\n"; break;
            case CMARK_NODE_CODE:
                if (shown) out += "<code>";
                out += escapeHtml(literalOf(node));
                if (shown) out += "</code>";
                break;
            case CMARK_NODE_HTML_INLINE: out += escapeHtml(literalOf(node)); break;
            case CMARK_NODE_HTML_BLOCK:
                out += shown ? "<pre class=\"raw-html\" tabindex=\"0\"><code>" : "";
                out += escapeHtml(literalOf(node));
                out += shown ? "</code></pre>\n" : "\n";
                break;
            case CMARK_NODE_CODE_BLOCK: {
                if (shown) {
                    std::string const language = languageOf(node);
                    out += "<pre tabindex=\"0\"><code";
                    if (!language.empty()) out += " class=\"language-" + escapeHtml(language) + "\"";
                    out += '>';
                }
                out += escapeHtml(literalOf(node));
                out += shown ? "</code></pre>\n" : "\n";
                break;
            }
            case CMARK_NODE_THEMATIC_BREAK: if (shown) out += "<hr>\n"; break;
            case CMARK_NODE_PARAGRAPH:
                if (shown && !inTightList(node)) open("<p>", "</p>\n", close);
                else if (!inTightList(node)) close = "\n";
                break;
            case CMARK_NODE_BLOCK_QUOTE: if (shown) open("<blockquote>\n", "</blockquote>\n", close); break;
            case CMARK_NODE_LIST:
                if (!shown) break;
                if (cmark_node_get_list_type(node) == CMARK_ORDERED_LIST) {
                    int const start = cmark_node_get_list_start(node);
                    open(start == 1 ? std::string("<ol>\n") : "<ol start=\"" + std::to_string(start) + "\">\n",
                         "</ol>\n", close);
                } else {
                    open("<ul>\n", "</ul>\n", close);
                }
                break;
            case CMARK_NODE_ITEM: if (shown) open("<li>", "</li>\n", close); break;
            case CMARK_NODE_HEADING: heading(node, shown, close); break;
            case CMARK_NODE_EMPH: if (shown) open("<em>", "</em>", close); break;
            case CMARK_NODE_STRONG: if (shown) open("<strong>", "</strong>", close); break;
            case CMARK_NODE_LINK: link(node, shown, close); break;
            case CMARK_NODE_IMAGE:
                image(node, shown);
                // image() wrote the alt text: skip the image's own inlines and its exit.
                --depth_;
                cmark_iter_reset(iter, node, CMARK_EVENT_EXIT);
                return;
            default: extension(node, shown, close); break;
        }
        closers_.push_back(std::move(close));
    }

    void exit(cmark_node* node) {
        if (closers_.empty()) return;
        if (inline_ && cmark_node_get_type(node) == CMARK_NODE_LIST && !numbers_.empty()) numbers_.pop_back();
        std::string const& close = closers_.back();
        if (!(inline_ && close == " " && (out.empty() || out.back() == ' '))) out += close;
        closers_.pop_back();
        --depth_;
    }

    bool leaf(cmark_node* node) const {
        switch (cmark_node_get_type(node)) {
            case CMARK_NODE_TEXT: case CMARK_NODE_SOFTBREAK: case CMARK_NODE_LINEBREAK: case CMARK_NODE_CODE:
            case CMARK_NODE_HTML_INLINE: case CMARK_NODE_HTML_BLOCK: case CMARK_NODE_CODE_BLOCK:
            case CMARK_NODE_THEMATIC_BREAK:
                return true;
            default: return false;
        }
    }

    std::string out;

private:
    void open(std::string const& tag, std::string_view closing, std::string& close) {
        out += tag;
        close = closing;
    }

    void heading(cmark_node* node, bool shown, std::string& close) {
        std::size_t const n = headings_++;
        if (!shown) return;
        int const level = std::min(6, links_.sectionLevel + cmark_node_get_heading_level(node));
        std::string const tag = "h" + std::to_string(level);
        std::string const id = n < links_.headingIds.size() ? links_.headingIds[n] : std::string();
        if (id.empty()) {
            open("<" + tag + ">", "</" + tag + ">\n", close);
            return;
        }
        std::string const escaped = escapeHtml(id);
        out += "<" + tag + " id=\"" + escaped + "\">";
        close = "<a class=\"anchor\" href=\"#" + escaped + "\" aria-label=\"Link to this heading\"></a></" + tag + ">\n";
    }

    void link(cmark_node* node, bool shown, std::string& close) {
        char const* url = cmark_node_get_url(node);
        std::optional<std::string> const href = links_.link ? links_.link(url ? url : "") : std::nullopt;
        if (!shown) return;
        if (!href) {
            open("<span class=\"link-text\">", "</span>", close);
            return;
        }
        out += "<a href=\"" + escapeHtml(*href) + "\"";
        if (isWebUrl(*href)) out += " rel=\"external noopener noreferrer\"";
        if (char const* title = cmark_node_get_title(node); title && *title)
            out += " title=\"" + escapeHtml(title) + "\"";
        out += '>';
        close = "</a>";
    }

    void image(cmark_node* node, bool shown) {
        char const* url = cmark_node_get_url(node);
        std::string const alt = plainTextOf(node);
        std::optional<std::string> const src = links_.image ? links_.image(url ? url : "") : std::nullopt;
        if (shown && src) {
            out += "<img src=\"" + escapeHtml(*src) + "\" alt=\"" + escapeHtml(alt) + "\" loading=\"lazy\">";
        } else if (shown) {
            out += "<span class=\"missing-image\">" + escapeHtml(alt.empty() ? std::string("(image)") : alt) + "</span>";
        } else {
            out += escapeHtml(alt);
        }
    }

    /// Tables of GitHub-flavoured Markdown: table, table_row (the first is the header), table_cell.
    void extension(cmark_node* node, bool shown, std::string& close) {
        std::string_view const type = extensionType(node);
        if (!shown) return;
        if (type == "table") {
            alignments_ = cmark_gfm_extensions_get_table_alignments(node);
            columns_ = cmark_gfm_extensions_get_table_columns(node);
            open("<div class=\"table-scroll\" tabindex=\"0\" role=\"region\" aria-label=\"Table\"><table>\n",
                 "</tbody></table></div>\n", close);
        } else if (type == "table_row" || type == "table_header") {
            header_ = type == "table_header" || cmark_gfm_extensions_get_table_row_is_header(node) != 0;
            column_ = 0;
            if (header_) {
                out += "<thead>";
                close = "</tr></thead>\n<tbody>";
            } else {
                close = "</tr>\n";
            }
            out += "<tr>";
        } else if (type == "table_cell") {
            char const* tag = header_ ? "th" : "td";
            out += '<';
            out += tag;
            if (header_) out += " scope=\"col\"";
            if (alignments_ && column_ < columns_) {
                switch (alignments_[column_]) {
                    case 'l': out += " class=\"align-left\""; break;
                    case 'c': out += " class=\"align-center\""; break;
                    case 'r': out += " class=\"align-right\""; break;
                    default: break;
                }
            }
            ++column_;
            out += '>';
            close = std::string("</") + tag + ">";
        }
    }

    DescriptionLinks const& links_;
    bool inline_;                       ///< one line of inlines: no block elements
    std::vector<int> numbers_;          ///< inline mode: the next number of each open list (-1: bullets)
    std::vector<std::string> closers_;  ///< what each open node writes when it closes
    std::size_t depth_ = 0;
    std::size_t headings_ = 0;
    uint8_t* alignments_ = nullptr;
    std::uint16_t columns_ = 0;
    std::uint16_t column_ = 0;
    bool header_ = false;
};

std::string render(ParsedDescription const& description, DescriptionLinks const& links, bool inlineOnly) {
    Writer writer(links, inlineOnly);
    cmark_iter* iter = cmark_iter_new(description.root());
    if (!iter) throw std::bad_alloc();
    for (cmark_event_type event; (event = cmark_iter_next(iter)) != CMARK_EVENT_DONE;) {
        cmark_node* node = cmark_iter_get_node(iter);
        if (cmark_node_get_type(node) == CMARK_NODE_DOCUMENT) continue;
        if (event == CMARK_EVENT_ENTER) {
            writer.enter(node, iter);
            // Leaves get no exit event from cmark's iterator.
            if (writer.leaf(node)) writer.exit(node);
        } else if (event == CMARK_EVENT_EXIT) {
            writer.exit(node);
        }
    }
    cmark_iter_free(iter);
    return std::move(writer.out);
}

/// True when `text` holds nothing CommonMark would read as markup or an entity.
bool plainText(std::string_view text) {
    for (char c : text)
        switch (c) {
            case '*': case '_': case '`': case '[': case ']': case '<': case '>': case '&': case '!': case '\\':
            case '\n': case '\r': case '|': case '~':
                return false;
            default: break;
        }
    if (text.empty()) return true;
    char const first = text.front();
    return first != ' ' && first != '\t' && first != '#' && first != '-' && first != '+' && first != '=' &&
           !(first >= '0' && first <= '9');
}

}  // namespace

std::string descriptionHtml(ParsedDescription const& description, DescriptionLinks const& links) {
    return render(description, links, false);
}

std::string inlineHtml(std::string_view text, DescriptionLinks const& links) {
    if (plainText(text)) return escapeHtml(text);
    std::string html = render(ParsedDescription::parse(text), links, true);
    while (!html.empty() && (html.back() == ' ' || html.back() == '\n')) html.pop_back();
    std::size_t start = 0;
    while (start < html.size() && html[start] == ' ') ++start;
    return html.substr(start);
}

}  // namespace refpage
