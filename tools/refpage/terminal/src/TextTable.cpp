#include <algorithm>
#include <refpage/terminal/DisplayWidth.hpp>
#include <refpage/terminal/TextTable.hpp>
#include <string_view>

namespace refpage {

namespace {

constexpr std::size_t tabStop = 8;
constexpr std::string_view ellipsis = "...";
constexpr std::size_t columnGap = 2;

/// `line` with each tab replaced by spaces up to the next tab stop.
std::string expandTabs(std::string_view line) {
    std::string out;
    std::size_t start = 0;
    for (std::size_t tab = line.find('\t'); tab != std::string_view::npos; tab = line.find('\t', start)) {
        out.append(line.substr(start, tab - start));
        out.append(tabStop - displayWidth(out) % tabStop, ' ');
        start = tab + 1;
    }
    out.append(line.substr(start));
    return out;
}

std::string cut(std::string line, std::size_t width) {
    if (displayWidth(line) <= width) return line;
    return std::string(fitWidth(line, width - ellipsis.size())) + std::string(ellipsis);
}

std::size_t cellWidth(std::vector<std::string> const& lines) {
    std::size_t width = 0;
    for (auto const& line : lines) width = std::max(width, displayWidth(line));
    return width;
}

}  // namespace

TextTable::TextTable(std::vector<std::string> header, std::size_t maxWidth)
    : maxWidth_(std::max<std::size_t>(maxWidth, ellipsis.size() + 1)) {
    std::size_t const columns = header.size();
    header_ = makeRow(std::move(header), columns, false);
}

TextTable::Row TextTable::makeRow(std::vector<std::string> cells, std::size_t columns, bool cutCells) const {
    cells.resize(columns);
    Row row(cells.size());
    for (std::size_t i = 0; i < cells.size(); ++i) {
        std::string_view text = cells[i];
        bool const last = i + 1 == cells.size();
        for (;;) {
            std::size_t const end = text.find('\n');
            std::string line = expandTabs(text.substr(0, end));
            row[i].push_back(cutCells && !last ? cut(std::move(line), maxWidth_) : std::move(line));
            if (end == std::string_view::npos) break;
            text.remove_prefix(end + 1);
        }
    }
    return row;
}

void TextTable::addRow(std::vector<std::string> cells) {
    rows_.push_back(makeRow(std::move(cells), header_.size(), true));
}

std::string TextTable::render(std::size_t indent) const {
    std::vector<std::size_t> widths(header_.size(), 0);
    auto measure = [&widths](Row const& row) {
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], cellWidth(row[i]));
    };
    measure(header_);
    for (auto const& row : rows_) measure(row);

    std::string out;
    auto print = [&](Row const& row) {
        std::size_t height = 0;
        for (auto const& cell : row) height = std::max(height, cell.size());
        for (std::size_t lineIndex = 0; lineIndex < height; ++lineIndex) {
            std::string text(indent, ' ');
            for (std::size_t i = 0; i < row.size(); ++i) {
                std::string const& line = lineIndex < row[i].size() ? row[i][lineIndex] : std::string();
                text += line;
                if (i + 1 < row.size()) text.append(widths[i] - displayWidth(line) + columnGap, ' ');
            }
            while (!text.empty() && text.back() == ' ') text.pop_back();
            out += text;
            out += '\n';
        }
    };
    print(header_);
    for (auto const& row : rows_) print(row);
    return out;
}

}  // namespace refpage
