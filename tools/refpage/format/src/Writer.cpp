#include <fmt/format.h>
#include <utf8.h>

#include <ovrin/array.hpp>
#include <reference/glue/Properties.hpp>
#include <refpage/format/Writer.hpp>
#include <refpage/support/FunctionRef.hpp>
#include <algorithm>
#include <optional>
#include <span>

#include "RecordViews.hpp"

namespace refpage {

namespace {

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
    /// Hands the text to `sink` in pieces of about `piece` bytes as it is written, keeping no more.
    PageTextWriter(FunctionRef<void(std::string_view)> sink, std::size_t piece) : sink_(sink), piece_(piece) {
        out_.reserve(piece + piece / 4);
    }
    /// What is written and not yet handed to the sink goes to it.
    void flush() {
        if (sink_ && !out_.empty()) (*sink_)(out_);
        out_.clear();
    }
    /// The text, its spare capacity released when that is more than a quarter.
    std::string take() {
        if (out_.capacity() - out_.size() > out_.size() / 4) out_.shrink_to_fit();
        return std::move(out_);
    }

    template <class Record>
    void record(Record const& source, std::size_t level) {
        out_ += '{';
        bool first = true;
        for (PropertyEntry const& entry : source.table().entries) {
            if (!first) out_ += ',';
            first = false;
            newLine(level + 1);
            out_ += '"';
            out_ += entry.word;
            out_ += "\": ";
            value(source, entry, level + 1);
            if (sink_ && out_.size() >= piece_) flush();
        }
        newLine(level);
        out_ += '}';
    }

private:
    void newLine(std::size_t level) {
        out_ += '\n';
        out_.append(level, ' ');
    }

    /// Runs of printable ASCII, which most text is, are copied as they are; everything else
    /// is converted and escaped. A run of code units from 0x80 never splits a surrogate pair.
    void text(std::u16string_view value) {
        out_ += '"';
        auto const plain = [](char16_t unit) { return unit >= 0x20 && unit < 0x80 && unit != u'"' && unit != u'\\'; };
        for (auto at = value.begin(); at != value.end();) {
            auto const plainEnd = std::find_if_not(at, value.end(), plain);
            out_.append(plainEnd - at, '\0');
            std::transform(at, plainEnd, out_.end() - (plainEnd - at), [](char16_t unit) { return static_cast<char>(unit); });
            auto const otherEnd = std::find_if(plainEnd, value.end(), [](char16_t unit) { return unit < 0x80; });
            auto const end = otherEnd != plainEnd ? otherEnd : plainEnd + (plainEnd != value.end());
            utf8::utf16to8(plainEnd, end, EscapingAppender(out_));
            at = end;
        }
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

    template <class Record>
    void value(Record const& source, PropertyEntry const& entry, std::size_t level) {
        switch (entry.kind) {
            case PropertyKind::String: text(source.text(entry)); return;
            case PropertyKind::Bool: out_ += source.flag(entry) ? "true" : "false"; return;
            case PropertyKind::Enumeration: {
                std::span<std::uint32_t const> const values = source.numbers(entry);
                auto const member = [this, &entry](std::uint32_t number) {
                    std::optional<std::string_view> const key = entry.enumeration->keyOf(number);
                    if (key && !key->empty())
                        text(*key);
                    else
                        out_ += fmt::format("{}", number);
                };
                if (values.size() == 1) {
                    member(values[0]);
                    return;
                }
                array(values.size(), level, [&](std::size_t i) { member(values[i]); });
                return;
            }
            case PropertyKind::StringList:
                array(source.count(entry), level, [&](std::size_t i) { text(source.text(entry, i)); });
                return;
            case PropertyKind::ObjectArray:
                array(source.count(entry), level, [&](std::size_t i) {
                    source.child(entry, i, [&](auto const& child) { record(child, level + 1); });
                });
                return;
            case PropertyKind::Record:
                source.child(entry, 0, [&](auto const& child) { record(child, level); });
                return;
        }
    }

    std::string out_;
    std::optional<FunctionRef<void(std::string_view)>> sink_;  ///< when set, where the text goes piece by piece
    std::size_t piece_ = 0;
};

}  // namespace

std::string pageText(oxArray_tag const* page, std::size_t sizeHint) {
    PageTextWriter writer(sizeHint);
    writer.record(hostRecord(page), 0);
    return writer.take();
}

void writePageText(oxArray_tag const* page, FunctionRef<void(std::string_view)> sink) {
    PageTextWriter writer(sink, std::size_t{1} << 16);
    writer.record(hostRecord(page), 0);
    writer.flush();
}

}  // namespace refpage
