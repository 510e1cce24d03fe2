#include <fmt/format.h>
#include <utf8.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <reference/property/RefItem.hpp>
#include <refpage/PageParser.hpp>
#include <refpage/Utf.hpp>

#include "JsonPath.hpp"
#include "UniqueKeyParser.hpp"

namespace refpage {

namespace {

using reference::glue::EnumerationInfo;
using reference::glue::PropertyEntry;
using reference::glue::PropertyKind;
using reference::glue::PropertyTable;

/// A message safe to print: bytes outside printable ASCII shown as \xNN.
std::string printable(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7f)
            result += c;
        else
            result += fmt::format("\\x{:02X}", byte);
    }
    return result;
}

/// The parser's reason without its own prefix and position.
std::string parseReason(std::string_view what) {
    std::size_t const column = what.find("column ");
    if (column != std::string_view::npos) {
        std::size_t const colon = what.find(": ", column);
        if (colon != std::string_view::npos) return printable(what.substr(colon + 2));
    }
    std::size_t const bracket = what.find("] ");
    return printable(bracket == std::string_view::npos ? what : what.substr(bracket + 2));
}

/// A short rendering of a JSON value for messages.
std::string shortText(Json const& json) {
    std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (text.size() > 40) text = text.substr(0, 37) + "...";
    return text;
}

class PageReader {
public:
    PageReader(std::string_view source, ParsedPage& page) : source_(source), page_(page) {}

    PageNode readRecord(Json const& json, PropertyTable const& table) {
        PageNode node{&table, {}};
        node.assignments.reserve(std::min(json.size(), table.entries.size()));
        for (auto const& [key, value] : json.items()) {
            PathSegment const segment(path_, key);
            PropertyEntry const* const entry = table.find(key);
            if (entry == nullptr) {
                error(fmt::format("unknown key \"{}\" in {}", printable(key), describeRecord(table)));
                continue;
            }
            Assignment assignment{entry, {}};
            if (readValue(*entry, value, assignment.value)) node.assignments.push_back(std::move(assignment));
        }
        return node;
    }

    void error(std::string message) {
        page_.errors.push_back(PageError{std::string(source_), path_, std::move(message)});
    }

private:
    void warn(std::string message) {
        page_.warnings.push_back(PageError{std::string(source_), path_, std::move(message)});
    }

    static std::string describeRecord(PropertyTable const& table) {
        std::string_view const name = table.qualifiedName;
        std::string_view const shortName = name.substr(name.rfind('.') + 1);
        bool const vowel = !shortName.empty() && std::string_view("AEIOU").find(shortName.front()) != std::string_view::npos;
        return fmt::format("{} {} record", vowel ? "an" : "a", shortName);
    }

    /// Records a type error unless `matches`.
    bool expect(Json const& json, bool matches, std::string_view expected) {
        if (matches) return true;
        if (json.is_null())
            error(fmt::format("expected {}, found null", expected));
        else
            error(fmt::format("expected {}, found {} {}", expected, json.type_name(), shortText(json)));
        return matches;
    }

    bool readString(Json const& json, std::u16string& text) {
        if (!expect(json, json.is_string(), "a string")) return false;
        try {
            text = toUtf16(json.get_ref<Json::string_t const&>());
        } catch (utf8::exception const&) {
            error("invalid UTF-8 in string");
            return false;
        }
        return true;
    }

    bool readValue(PropertyEntry const& entry, Json const& json, NodeValue& value) {
        switch (entry.kind) {
            case PropertyKind::String: return readString(json, value.emplace<std::u16string>());
            case PropertyKind::Bool:
                if (!expect(json, json.is_boolean(), "a bool")) return false;
                value = json.get<bool>();
                return true;
            case PropertyKind::Enumeration:
                return readEnumeration(*entry.enumeration, json, value.emplace<EnumerationValues>());
            case PropertyKind::StringList: {
                if (!expect(json, json.is_array(), "an array of strings")) return false;
                auto& list = value.emplace<StringList>();
                list.resize(json.size());
                bool ok = true;
                for (std::size_t i = 0; i < json.size(); ++i) {
                    PathSegment const segment(path_, i);
                    ok = readString(json[i], list[i]) && ok;
                }
                return ok;
            }
            case PropertyKind::ObjectArray: {
                if (!expect(json, json.is_array(), "an array of objects")) return false;
                PropertyTable const& table = entry.elementTable();
                auto& nodes = value.emplace<NodeList>();
                nodes.reserve(json.size());
                std::size_t const errorsBefore = page_.errors.size();
                for (std::size_t i = 0; i < json.size(); ++i) {
                    PathSegment const segment(path_, i);
                    if (expect(json[i], json[i].is_object(), "an object")) nodes.push_back(readRecord(json[i], table));
                }
                return page_.errors.size() == errorsBefore;
            }
            case PropertyKind::Record: {
                if (!expect(json, json.is_object(), "an object")) return false;
                auto& nodes = value.emplace<NodeList>();
                nodes.push_back(readRecord(json, entry.elementTable()));
                return true;
            }
        }
        return false;
    }

    bool readEnumeration(EnumerationInfo const& info, Json const& json, EnumerationValues& values) {
        if (!json.is_array()) {
            values.resize(1);
            return readEnumerationValue(info, json, values[0]);
        }
        values.resize(json.size());
        bool ok = true;
        for (std::size_t i = 0; i < json.size(); ++i) {
            PathSegment const segment(path_, i);
            ok = readEnumerationValue(info, json[i], values[i]) && ok;
        }
        return ok;
    }

    bool readEnumerationValue(EnumerationInfo const& info, Json const& json, std::uint32_t& value) {
        if (json.is_string()) {
            auto const& key = json.get_ref<Json::string_t const&>();
            value = info.keyToValue(key);
            if (!info.namesMember(key))
                warn(fmt::format("\"{}\" names no member of {}; stored {} ({})", printable(key), info.className, value,
                                 info.displayText(value)));
            return true;
        }
        if (json.is_number_unsigned()) {
            auto const number = json.get<std::uint64_t>();
            if (number > std::numeric_limits<std::uint32_t>::max()) {
                error(fmt::format("{} is outside the unsigned 32-bit range", number));
                return false;
            }
            value = static_cast<std::uint32_t>(number);
            if (!info.hasMember(value))
                warn(fmt::format("{} names no member of {}; stored {} ({})", value, info.className, value,
                                 info.displayText(value)));
            return true;
        }
        if (json.is_number()) {
            error(fmt::format("{} is outside the unsigned 32-bit range", shortText(json)));
            return false;
        }
        return expect(json, false, fmt::format("a {} key or an unsigned 32-bit number", info.className));
    }

    std::string_view source_;
    ParsedPage& page_;
    std::string path_;
};

}  // namespace

std::optional<Json> parseJson(std::string_view text, std::string_view source, PageErrors& errors) {
    try {
        std::vector<DuplicateKey> duplicates;
        Json json = parseUniqueKeys(text, duplicates);
        if (duplicates.empty()) return json;
        for (auto const& duplicate : duplicates)
            errors.push_back(PageError{std::string(source), duplicate.path,
                                       fmt::format("duplicate key \"{}\"", printable(duplicate.key))});
        return std::nullopt;
    } catch (Json::parse_error const& e) {
        // e.byte is 1-based and may point one past the end.
        std::size_t const position = std::min<std::size_t>(e.byte == 0 ? 0 : e.byte - 1, text.size());
        std::string_view const before = text.substr(0, position);
        std::size_t const lineStart = before.rfind('\n') == std::string_view::npos ? 0 : before.rfind('\n') + 1;
        PageError error{std::string(source), {}, "malformed JSON: " + parseReason(e.what())};
        error.line = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
        error.column = position - lineStart + 1;
        errors.push_back(std::move(error));
        return std::nullopt;
    } catch (Json::exception const& e) {
        // A number beyond the range of a double is refused after it was scanned, with no position.
        errors.push_back(PageError{std::string(source), {}, "malformed JSON: " + parseReason(e.what())});
        return std::nullopt;
    }
}

ParsedPage readPage(Json const& json, std::string_view source, LoadOptions const& options) {
    ParsedPage page;
    PageReader reader(source, page);
    PropertyTable const& table = reference::glue::tableOf<reference::property::RefItem>();
    if (!json.is_object())
        reader.error(fmt::format("expected an object (a page), found {}", json.type_name()));
    else
        page.root = reader.readRecord(json, table);
    page.root.table = &table;
    if (options.strict) {
        for (auto& warning : page.warnings) {
            warning.message += " (strict mode)";
            page.errors.push_back(std::move(warning));
        }
        page.warnings.clear();
    }
    return page;
}

ParsedPage parsePage(std::string_view text, std::string_view source, LoadOptions const& options) {
    PageErrors errors;
    std::optional<Json> const json = parseJson(text, source, errors);
    if (!json) {
        ParsedPage page;
        page.root.table = &reference::glue::tableOf<reference::property::RefItem>();
        page.errors = std::move(errors);
        return page;
    }
    return readPage(*json, source, options);
}

}  // namespace refpage
