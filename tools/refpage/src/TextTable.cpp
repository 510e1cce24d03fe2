#include <utf8.h>

#include <algorithm>
#include <refpage/TextTable.hpp>

namespace refpage {

std::size_t displayWidth(std::string const& text) {
    return static_cast<std::size_t>(utf8::unchecked::distance(text.begin(), text.end()));
}

namespace {

std::string cut(std::string const& text, std::size_t width) {
    if (displayWidth(text) <= width) return text;
    auto end = text.begin();
    utf8::unchecked::advance(end, width - 3);
    return std::string(text.begin(), end) + "...";
}

}  // namespace

TextTable::TextTable(std::vector<std::string> header, std::size_t maxWidth)
    : header_(std::move(header)), maxWidth_(std::max<std::size_t>(maxWidth, 4)) {}

void TextTable::addRow(std::vector<std::string> cells) {
    cells.resize(header_.size());
    for (std::size_t i = 0; i + 1 < cells.size(); ++i) cells[i] = cut(cells[i], maxWidth_);
    rows_.push_back(std::move(cells));
}

std::string TextTable::render(std::size_t indent) const {
    std::vector<std::size_t> widths(header_.size(), 0);
    auto measure = [&widths](std::vector<std::string> const& cells) {
        for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], displayWidth(cells[i]));
    };
    measure(header_);
    for (auto const& row : rows_) measure(row);

    std::string out;
    auto line = [&](std::vector<std::string> const& cells) {
        std::string text(indent, ' ');
        for (std::size_t i = 0; i < cells.size(); ++i) {
            text += cells[i];
            if (i + 1 < cells.size()) text.append(widths[i] - displayWidth(cells[i]) + 2, ' ');
        }
        while (!text.empty() && text.back() == ' ') text.pop_back();
        out += text;
        out += '\n';
    };
    line(header_);
    for (auto const& row : rows_) line(row);
    return out;
}

}  // namespace refpage
