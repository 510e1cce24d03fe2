#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <refpage/interchange/InventoryWriter.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Text.hpp>
#include <stdexcept>
#include <tuple>

#include "Zlib.hpp"

namespace refpage {

namespace {

/// Sphinx writes its own inventories at this level; a fixed level keeps the bytes fixed.
constexpr int compressionLevel = 9;

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

/// `text` with each whitespace run one space and none at either end.
std::string oneLine(std::string_view text) {
    std::string out;
    bool space = false;
    for (char const c : text) {
        if (isSpace(c)) {
            space = !out.empty();
            continue;
        }
        if (space) out += ' ';
        space = false;
        out += c;
    }
    return out;
}

/// `uri` with what would break its line or its meaning percent-encoded: spaces and control
/// characters, and a final '$' (which a reader takes for the name).
std::string safeUri(std::string_view uri) {
    std::string out;
    for (char const c : uri) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte <= 0x20 || byte == 0x7F)
            out += fmt::format("%{:02X}", byte);
        else
            out += c;
    }
    if (out.ends_with('$')) out.replace(out.size() - 1, 1, "%24");
    return out;
}

struct Line {
    SphinxRole role;
    std::string name;
    std::string uri;

    auto key() const { return std::tie(role.domain, name, role.objectType, uri); }
};

}  // namespace

std::string inventoryBytes(std::span<InventoryEntry const> entries, InventoryOptions const& options) {
    if (!validInventoryDomain(options.domain))
        throw std::invalid_argument(fmt::format("{} is no domain name: expected an ASCII letter, then letters, "
                                                "digits, '_', '-' or '.'",
                                                refpage::quoted(options.domain)));
    std::vector<Line> lines;
    lines.reserve(entries.size());
    for (auto const& entry : entries) {
        std::string name = oneLine(entry.name);
        if (name.empty()) continue;
        lines.push_back({sphinxRole(entry.type, options.domain), std::move(name), safeUri(entry.uri)});
    }
    std::sort(lines.begin(), lines.end(), [](Line const& a, Line const& b) { return a.key() < b.key(); });
    lines.erase(std::unique(lines.begin(), lines.end(), [](Line const& a, Line const& b) { return a.key() == b.key(); }),
                lines.end());

    std::string body;
    for (auto const& line : lines) {
        std::string_view uri = line.uri;
        bool const dollar = line.name.size() > 1 && uri.ends_with(line.name);
        if (dollar) uri.remove_suffix(line.name.size());
        fmt::format_to(std::back_inserter(body), "{} {} {} {}{} -\n", line.name, line.role.text(), line.role.priority,
                       uri, dollar ? "$" : "");
    }
    std::string out = fmt::format(
        "# Sphinx inventory version 2\n# Project: {}\n# Version: {}\n"
        "# The remainder of this file is compressed using zlib.\n",
        oneLine(options.project), oneLine(options.version));
    out += zlib::compress(body, compressionLevel);
    return out;
}

}  // namespace refpage
