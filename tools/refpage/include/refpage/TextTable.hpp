// Plain-text tables for a terminal: columns padded to their widest cell.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace refpage {

class TextTable {
public:
    /// Cells wider than `maxWidth` characters are cut with "...", except in the last column.
    explicit TextTable(std::vector<std::string> header, std::size_t maxWidth = 32);

    void addRow(std::vector<std::string> cells);
    bool empty() const noexcept { return rows_.empty(); }

    /// Header and rows, each line indented by `indent` spaces and ended by a newline.
    std::string render(std::size_t indent = 2) const;

private:
    std::vector<std::string> header_;
    std::vector<std::vector<std::string>> rows_;
    std::size_t maxWidth_;
};

/// Characters (code points) of a UTF-8 text.
std::size_t displayWidth(std::string const& text);

}  // namespace refpage
