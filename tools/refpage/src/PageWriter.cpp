#include <fmt/format.h>
#include <utf8.h>

#include <ovrin/array.hpp>
#include <reference/glue/Properties.hpp>
#include <refpage/PageWriter.hpp>
#include <algorithm>
#include <optional>
#include <span>

namespace refpage {

namespace {

using reference::glue::PropertyEntry;
using reference::glue::PropertyKind;
using reference::glue::PropertyTable;

/// Appends bytes of UTF-8 to a string, escaped as a JSON string's content.
class EscapingAppender {
public:
    using iterator_category = std::output_iterator_tag;
    using value_type = void;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = void;

    explicit EscapingAppender(std::string& out) : out_(&out) {}
    EscapingAppender& operator*() { return *this; }
    EscapingAppender& operator++() { return *this; }
    EscapingAppender& operator++(int) { return *this; }
    EscapingAppender& operator=(char byte) {
        switch (byte) {
            case '"': *out_ += "\\\""; break;
            case '\\': *out_ += "\\\\"; break;
            case '\b': *out_ += "\\b"; break;
            case '\f': *out_ += "\\f"; break;
            case '\n': *out_ += "\\n"; break;
            case '\r': *out_ += "\\r"; break;
            case '\t': *out_ += "\\t"; break;
            default:
                if (static_cast<unsigned char>(byte) < 0x20)
                    *out_ += fmt::format("\\u{:04x}", static_cast<unsigned>(byte));
                else
                    *out_ += byte;
        }
        return *this;
    }

private:
    std::string* out_;  ///< never null
};

/// Writes records in the layout of nlohmann's dump with a one-space indent.
class PageTextWriter {
public:
    explicit PageTextWriter(std::size_t sizeHint) { out_.reserve(sizeHint); }
    /// The text, its spare capacity released when that is more than a quarter.
    std::string take() {
        if (out_.capacity() - out_.size() > out_.size() / 4) out_.shrink_to_fit();
        return std::move(out_);
    }

    void record(void const* record, PropertyTable const& table, std::size_t level) {
        out_ += '{';
        bool first = true;
        for (PropertyEntry const& entry : table.entries) {
            if (!first) out_ += ',';
            first = false;
            newLine(level + 1);
            out_ += '"';
            out_ += entry.word;
            out_ += "\": ";
            value(record, entry, level + 1);
        }
        newLine(level);
        out_ += '}';
    }

private:
    void newLine(std::size_t level) {
        out_ += '\n';
        out_.append(level, ' ');
    }

    void text(std::u16string_view value) {
        out_ += '"';
        utf8::utf16to8(value.begin(), value.end(), EscapingAppender(out_));
        out_ += '"';
    }

    void text(std::string_view utf8) {
        out_ += '"';
        std::copy(utf8.begin(), utf8.end(), EscapingAppender(out_));
        out_ += '"';
    }

    /// "[]" for none, else one element a line.
    template <class Element>
    void array(std::size_t count, std::size_t level, Element element) {
        if (count == 0) {
            out_ += "[]";
            return;
        }
        out_ += '[';
        for (std::size_t i = 0; i < count; ++i) {
            if (i != 0) out_ += ',';
            newLine(level + 1);
            element(i);
        }
        newLine(level);
        out_ += ']';
    }

    void value(void const* record, PropertyEntry const& entry, std::size_t level) {
        switch (entry.kind) {
            case PropertyKind::String: text(entry.strings().get(record)); return;
            case PropertyKind::Bool: out_ += entry.flag().get(record) ? "true" : "false"; return;
            case PropertyKind::Enumeration: {
                std::span<std::uint32_t const> const values =
                    reference::glue::enumerationValues(entry.arrays().get(record));
                auto const write = [this, &entry](std::uint32_t number) {
                    std::optional<std::string_view> const key = entry.enumeration->keyOf(number);
                    if (key && !key->empty())
                        text(*key);
                    else
                        out_ += fmt::format("{}", number);
                };
                if (values.size() == 1) {
                    write(values[0]);
                    return;
                }
                array(values.size(), level, [&](std::size_t i) { write(values[i]); });
                return;
            }
            case PropertyKind::StringList: {
                oxArray_tag const* const list = entry.arrays().get(record);
                array(oxGetNumberOfElements(list), level, [&](std::size_t i) { text(oxGetStringElement(list, i)); });
                return;
            }
            case PropertyKind::ObjectArray: {
                oxArray_tag const* const list = entry.arrays().get(record);
                array(oxGetNumberOfElements(list), level, [&](std::size_t i) { element(list, i, entry, level + 1); });
                return;
            }
            case PropertyKind::Record: element(entry.arrays().get(record), 0, entry, level); return;
        }
    }

    void element(oxArray_tag const* list, std::size_t index, PropertyEntry const& entry, std::size_t level) {
        ocos::COSInterfacePtr const object = omGetArrayElement(list, index);
        PropertyTable const& table = entry.elementTable();
        record(reference::glue::recordOf(*object.get(), table), table, level);
    }

    std::string out_;
};

}  // namespace

std::string pageText(oxArray_tag const* page, std::size_t sizeHint) {
    ocos::COSInterfacePtr const object = reference::glue::objectOf(page);
    PropertyTable const& table = reference::glue::tableOf(*object.get());
    PageTextWriter writer(sizeHint);
    writer.record(reference::glue::recordOf(*object.get(), table), table, 0);
    return writer.take();
}

Json pageToJson(oxArray_tag const* page) {
    return Json::parse(pageText(page, 0));
}

std::string jsonText(Json const& json) {
    return json.dump(1, ' ', false, Json::error_handler_t::strict);
}

}  // namespace refpage
