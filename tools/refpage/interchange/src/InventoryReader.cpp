#include <fmt/format.h>
#include <utf8.h>

#include <charconv>
#include <optional>
#include <refpage/format/Inputs.hpp>
#include <refpage/interchange/InventoryReader.hpp>
#include <refpage/support/Escape.hpp>
#include <system_error>

#include "Zlib.hpp"

namespace refpage {

namespace {

constexpr std::string_view firstLine = "# Sphinx inventory version 2";
/// Without their space: an empty name or version leaves none once the line's end is trimmed.
constexpr std::string_view projectPrefix = "# Project:";
constexpr std::string_view versionPrefix = "# Version:";

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

std::string_view trimmedEnd(std::string_view text) {
    while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
    return text;
}

/// What follows `prefix` in a header line, without the one space after it.
std::string headerValue(std::string_view line, std::string_view prefix) {
    std::string_view value = line.substr(prefix.size());
    if (value.starts_with(' ')) value.remove_prefix(1);
    return std::string(value);
}

/// "64 MiB", "16 KiB", "100 bytes".
std::string sizeText(std::size_t bytes) {
    if (bytes >= (std::size_t{1} << 20) && bytes % (std::size_t{1} << 20) == 0)
        return fmt::format("{} MiB", bytes >> 20);
    if (bytes >= 1024 && bytes % 1024 == 0) return fmt::format("{} KiB", bytes >> 10);
    return fmt::format("{} bytes", bytes);
}

/// The first split of `line` (no trailing whitespace) that reads as
/// `name role priority uri displayName`, as Sphinx's pattern
/// `(.+?)\s+(\S+)\s+(-?\d+)\s+?(\S*)\s+(.*)` finds it. Each try reads at most three tokens
/// past its split, and each token is read by at most three tries: linear in the line.
struct Fields {
    std::string_view name, role, priority, uri, displayName;
};

std::optional<Fields> splitEntry(std::string_view line) {
    auto skipSpaces = [&line](std::size_t at) {
        while (at < line.size() && isSpace(line[at])) ++at;
        return at;
    };
    auto token = [&line](std::size_t at) {
        std::size_t end = at;
        while (end < line.size() && !isSpace(line[end])) ++end;
        return end;
    };
    for (std::size_t split = 1; split < line.size(); ++split) {
        if (!isSpace(line[split]) || isSpace(line[split - 1])) continue;  // the start of a whitespace run
        Fields fields;
        fields.name = line.substr(0, split);
        std::size_t const roleStart = skipSpaces(split);
        std::size_t const roleEnd = token(roleStart);
        if (roleEnd == roleStart || roleEnd == line.size()) continue;
        std::size_t const priorityStart = skipSpaces(roleEnd);
        std::size_t const priorityEnd = token(priorityStart);
        std::string_view const priority = line.substr(priorityStart, priorityEnd - priorityStart);
        std::string_view const digits = priority.starts_with('-') ? priority.substr(1) : priority;
        if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos) continue;
        if (priorityEnd == line.size()) continue;
        std::size_t const uriStart = priorityEnd + 1;  // one space, lazily, before the uri
        std::size_t const uriEnd = token(uriStart);
        if (uriEnd == line.size()) continue;  // a display name needs a space before it
        fields.role = line.substr(roleStart, roleEnd - roleStart);
        fields.priority = priority;
        fields.uri = line.substr(uriStart, uriEnd - uriStart);
        fields.displayName = line.substr(skipSpaces(uriEnd));
        return fields;
    }
    return std::nullopt;
}

/// Builds the inventory from the inflated text, piece by piece, one complete line at a time.
class EntryReader {
public:
    EntryReader(std::string_view source, InventoryLimits const& limits, Inventory& inventory)
        : source_(source), limits_(limits), inventory_(inventory) {}

    void take(std::string_view piece) {
        inflated_ += piece.size();
        if (inflated_ > limits_.inflatedBytes)
            fail(fmt::format("the compressed entries inflate to more than {}, the most read (a decompression bomb?)",
                             sizeText(limits_.inflatedBytes)));
        while (!piece.empty()) {
            std::size_t const end = piece.find('\n');
            std::string_view const part = piece.substr(0, end);
            if (partial_.size() + part.size() > limits_.lineBytes)
                fail(fmt::format("entry {} is longer than {}", line_ + 1, sizeText(limits_.lineBytes)));
            if (end == std::string_view::npos) {
                partial_ += part;
                return;
            }
            if (partial_.empty()) {
                entry(part);
            } else {
                partial_ += part;
                entry(partial_);
                partial_.clear();
            }
            piece.remove_prefix(end + 1);
        }
    }

    /// The last line, when the text does not end with a line feed.
    void finish() {
        if (!partial_.empty()) entry(partial_);
        partial_.clear();
    }

    [[noreturn]] void fail(std::string message) const { throw InventoryError(PageError{std::string(source_), {}, std::move(message)}); }

private:
    void entry(std::string_view raw) {
        ++line_;
        std::string_view const line = trimmedEnd(raw);
        if (line.empty()) return;
        if (!utf8::is_valid(line.begin(), line.end()))
            fail(fmt::format("entry {} is not valid UTF-8: {}", line_, excerpt(line)));
        std::optional<Fields> const fields = splitEntry(line);
        if (!fields)
            fail(fmt::format("entry {} is not \"name domain:role priority uri displayName\": {}", line_,
                             excerpt(line)));
        if (fields->role.find(':') == std::string_view::npos)
            fail(fmt::format("entry {} has the role {}, expected \"domain:role\"", line_, refpage::quoted(fields->role)));
        std::int64_t priority = 0;
        auto const [end, error] =
            std::from_chars(fields->priority.data(), fields->priority.data() + fields->priority.size(), priority);
        if (error != std::errc{} || end != fields->priority.data() + fields->priority.size())
            fail(fmt::format("entry {} has the priority {}, outside the 64-bit range", line_, excerpt(fields->priority)));
        if (inventory_.items.size() == limits_.items)
            fail(fmt::format("more than {} entries, the most read", limits_.items));
        InventoryItem item{std::string(fields->name), std::string(fields->role), priority, std::string(fields->uri),
                           std::string(fields->displayName)};
        if (item.uri.ends_with('$')) item.uri.replace(item.uri.size() - 1, 1, item.name);
        if (item.displayName == "-") item.displayName = item.name;
        inventory_.items.push_back(std::move(item));
    }

    std::string_view source_;
    InventoryLimits const& limits_;
    Inventory& inventory_;
    std::size_t inflated_ = 0;  ///< bytes inflated so far
    std::size_t line_ = 0;      ///< lines of the inflated text read so far
    std::string partial_;       ///< the start of a line that continues in the next piece
};

/// Takes the next header line off `rest`: without its line feed and trailing whitespace.
std::string_view headerLine(std::string_view& rest, std::size_t number, EntryReader const& reader,
                            InventoryLimits const& limits) {
    std::size_t const end = rest.find('\n');
    if (end == std::string_view::npos) {
        if (rest.size() > limits.lineBytes)
            reader.fail(fmt::format("header line {} is longer than {}", number, sizeText(limits.lineBytes)));
        reader.fail(fmt::format("the file ends in header line {}: expected four header lines, then the compressed "
                                "entries",
                                number));
    }
    if (end > limits.lineBytes)
        reader.fail(fmt::format("header line {} is longer than {}", number, sizeText(limits.lineBytes)));
    std::string_view const line = trimmedEnd(rest.substr(0, end));
    rest.remove_prefix(end + 1);
    if (!utf8::is_valid(line.begin(), line.end()))
        reader.fail(fmt::format("header line {} is not valid UTF-8: {}", number, excerpt(line)));
    return line;
}

}  // namespace

Inventory readInventory(std::string_view bytes, std::string_view source, InventoryLimits const& limits) {
    Inventory inventory;
    EntryReader reader(source, limits, inventory);
    if (bytes.size() > limits.fileBytes)
        reader.fail(fmt::format("the file holds more than {}, the most read", sizeText(limits.fileBytes)));
    if (bytes.empty()) reader.fail("the file is empty, expected a Sphinx inventory");
    std::string_view rest = bytes;
    std::string_view const first = headerLine(rest, 1, reader, limits);
    if (first == "# Sphinx inventory version 1")
        reader.fail("a version 1 inventory (written by Sphinx before 1.0); only version 2 is read");
    if (first != firstLine)
        reader.fail(fmt::format("not a Sphinx inventory: the first line is {}, expected {}", excerpt(first),
                                refpage::quoted(firstLine)));
    std::string_view const project = headerLine(rest, 2, reader, limits);
    if (!project.starts_with(projectPrefix))
        reader.fail(fmt::format("header line 2 is {}, expected \"# Project: NAME\"", excerpt(project)));
    std::string_view const version = headerLine(rest, 3, reader, limits);
    if (!version.starts_with(versionPrefix))
        reader.fail(fmt::format("header line 3 is {}, expected \"# Version: VERSION\"", excerpt(version)));
    std::string_view const compression = headerLine(rest, 4, reader, limits);
    if (compression.find("zlib") == std::string_view::npos)
        reader.fail(fmt::format("header line 4 is {}: the entries are not said to be compressed with zlib",
                                excerpt(compression)));
    inventory.project = headerValue(project, projectPrefix);
    inventory.version = headerValue(version, versionPrefix);

    zlib::Inflater inflater;
    auto const outcome = inflater.inflate(rest, [&reader](std::string_view piece) {
        reader.take(piece);
        return true;
    });
    switch (outcome.kind) {
        case zlib::Inflater::Outcome::Kind::Broken:
            reader.fail(fmt::format("the compressed entries are no zlib stream or a corrupt one: {}",
                                    refpage::quoted(outcome.reason)));
        case zlib::Inflater::Outcome::Kind::Truncated:
            reader.fail("the compressed entries end early: the file is cut short");
        case zlib::Inflater::Outcome::Kind::Stopped:
        case zlib::Inflater::Outcome::Kind::Complete: break;
    }
    if (outcome.consumed != rest.size())
        reader.fail(fmt::format("{} bytes follow the end of the compressed entries", rest.size() - outcome.consumed));
    reader.finish();
    return inventory;
}

Inventory readInventoryFile(std::filesystem::path const& file, InventoryLimits const& limits) {
    auto const failure = [&file](std::string message) {
        return InventoryError(PageError{file.string(), {}, std::move(message)});
    };
    std::error_code error;
    auto const status = std::filesystem::status(file, error);
    if (error) throw failure(error.message());
    if (!std::filesystem::is_regular_file(status))
        throw failure(std::filesystem::is_directory(status) ? "is a folder, expected an inventory file"
                                                            : "not a regular file, expected an inventory file");
    std::uintmax_t const size = std::filesystem::file_size(file, error);
    if (error) throw failure(error.message());
    if (size > limits.fileBytes)
        throw failure(fmt::format("the file holds more than {}, the most read", sizeText(limits.fileBytes)));
    std::string bytes;
    PageError readError;
    if (!readTextFile(file, bytes, readError)) throw InventoryError(std::move(readError));
    return readInventory(bytes, file.string(), limits);
}

}  // namespace refpage
