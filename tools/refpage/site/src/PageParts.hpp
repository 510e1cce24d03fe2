// Small pieces of template data that pages and the index share.
#pragma once

#include <string_view>

#include "Mustache.hpp"

namespace refpage {

/// Sets `key` of `node` to `text` cut after every '.', '_' and space: a template writes each
/// segment unbreakable (`<span class="w">`) with `<wbr>` after it, so a name or value wraps
/// only there, never inside a word (not even at a hyphen).
inline void setSegments(TemplateNode node, std::string const& key, std::string_view text) {
    TemplateNode segments = node.list(key);
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        if ((text[i] == '.' || text[i] == '_' || text[i] == ' ') && i + 1 < text.size()) {
            segments.append(std::string(text.substr(start, i + 1 - start)));
            start = i + 1;
        }
    if (start < text.size()) segments.append(std::string(text.substr(start)));
}

}  // namespace refpage
