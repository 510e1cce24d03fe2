// Plain-text tables for a terminal: columns padded to their widest cell, measured
// in terminal columns (DisplayWidth.hpp). Cells hold text already made displayable.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace refpage {

class TextTable {
public:
    /// Cell lines wider than `maxWidth` columns (at least 4) are cut to exactly that
    /// width or less, ending in "...", except in the last column.
    explicit TextTable(std::vector<std::string> header, std::size_t maxWidth = 32);

    /// A cell of several lines ('\n') makes its row as many lines tall, each line in the
    /// cell's column; tabs become spaces up to the next multiple of 8 columns of the cell.
    /// Missing cells are empty; extra cells are dropped.
    void addRow(std::vector<std::string> cells);
    bool empty() const noexcept { return rows_.empty(); }

    /// Header and rows, each line indented by `indent` spaces, without trailing spaces,
    /// ended by a newline.
    std::string render(std::size_t indent = 2) const;

private:
    using Cell = std::vector<std::string>;  ///< the cell's lines
    using Row = std::vector<Cell>;          ///< one cell per header column

    Row makeRow(std::vector<std::string> cells, std::size_t columns, bool cut) const;

    Row header_;
    std::vector<Row> rows_;
    std::size_t maxWidth_;
};

}  // namespace refpage
