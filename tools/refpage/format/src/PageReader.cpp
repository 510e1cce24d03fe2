#include "PageReader.hpp"

#include <fmt/format.h>
#include <utf8.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <refpage/format/Parser.hpp>
#include <refpage/support/Escape.hpp>
#include <string>
#include <type_traits>
#include <unordered_set>
#include <vector>

#include "JsonEvents.hpp"
#include "ReaderMessages.hpp"

namespace refpage {

namespace {

using reference::glue::EnumerationInfo;
using reference::glue::PropertyEntry;
using reference::glue::PropertyKind;
using reference::glue::PropertyTable;
using Json = nlohmann::json;  ///< only for the types of its event parser
using Pointer = nlohmann::json_pointer<std::string>;

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
/// The page's own key naming the JSON Schema it follows, for editors: a string, read and dropped.
constexpr std::string_view schemaKey = "$schema";
/// Strings longer than this hand their buffer back to the lexer's owner at once.
constexpr std::size_t releasedTokenSize = std::size_t{1} << 16;

/// What the value now starting must be, by where it stands.
enum class Expect {
    Ignored,           ///< inside a value that is not kept: anything
    Page,              ///< the page object
    String,            ///< a text
    Bool,              ///< a flag
    EnumerationValue,  ///< a key or a number
    Enumeration,       ///< a key, a number, or an array of them
    StringList,        ///< an array of strings
    RecordList,        ///< an array of objects
    RecordElement,     ///< an object of the open record list's element table
    Record,            ///< an object of the entry's element table
    SchemaName,        ///< the page's "$schema": a string, not kept
};

enum class FrameKind { Record, Records, Strings, Enumerations, Ignored };

/// One open object or array.
struct Frame {
    Frame(FrameKind kind_, std::size_t start_) : kind(kind_), start(start_) {}

    FrameKind kind;
    std::size_t start;                     ///< offset of its "{" or "["
    PropertyEntry const* entry = nullptr;  ///< Records, Strings, Enumerations: the property filled; Record: the last key's
    PageNode* node = nullptr;              ///< Record: the record filled
    NodeValue* list = nullptr;             ///< Records, Strings, Enumerations: the list filled
    std::size_t elements = 0;              ///< arrays: elements so far
    std::uint64_t seen = 0;                ///< Record: bit i set once table entry i was given
    std::unique_ptr<std::unordered_set<std::string>> otherKeys;  ///< Record: keys given that are not in the table
    bool keepValue = false;                ///< Record: the value of the last key is kept
    std::size_t typeError = none;          ///< Ignored: index of the error that quotes this value, quoted at its end
};

/// Builds the page's nodes from the parser's events, checking each key and value
/// against the property tables as it comes. Holds no value of the text beyond the
/// nodes it keeps; the open containers are a stack of at most maxNesting frames.
class PageReader {
public:
    using number_integer_t = Json::number_integer_t;
    using number_unsigned_t = Json::number_unsigned_t;
    using number_float_t = Json::number_float_t;
    using string_t = Json::string_t;
    using binary_t = Json::binary_t;

    /// Reads into `root`, whose table is set; `positions` follows the parser over the text.
    PageReader(TokenPositions& positions, std::string_view source, PageNode& root, ReadFindings& findings)
        : at_(positions), source_(source), root_(root), errors_(findings.errors), warnings_(findings.warnings) {}

    /// True when the text was not one well-formed value within the nesting limit.
    bool malformed() const { return malformed_; }
    std::size_t endOfValue() const { return endOfValue_; }
    std::string pointer() const { return path_.to_string(); }

    /// Makes `message` the page's one error, at `offset` of the text.
    void malformedAt(std::size_t offset, std::string message, std::string path = {}) {
        malformed_ = true;
        errors_.clear();
        warnings_.clear();
        errors_.add(source_, std::move(path), std::move(message), offset);
    }

    bool null() {
        std::size_t const start = at_.tokenStart();
        expectation();
        if (expect_ != Expect::Ignored) typeError(start, "null");
        return endValue();
    }

    bool boolean(bool value) {
        std::size_t const start = at_.tokenStart();
        expectation();
        if (expect_ == Expect::Bool)
            assign(start).emplace<bool>(value);
        else if (expect_ != Expect::Ignored)
            typeError(start, value ? "boolean true" : "boolean false");
        return endValue();
    }

    bool number_unsigned(number_unsigned_t value) {
        std::size_t const start = at_.tokenStart();
        expectation();
        if (isEnumeration()) {
            if (value > std::numeric_limits<std::uint32_t>::max())
                error(start, messages::outOfRange(std::to_string(value)));
            else
                enumerationNumber(start, static_cast<std::uint32_t>(value));
        } else if (expect_ != Expect::Ignored) {
            typeError(start, fmt::format("number {}", value));
        }
        return endValue();
    }

    bool number_integer(number_integer_t value) {
        std::size_t const start = at_.tokenStart();
        expectation();
        if (isEnumeration()) {
            if (value >= 0)  // "-0"
                enumerationNumber(start, static_cast<std::uint32_t>(value));
            else
                notAnEnumerationNumber(start, fmt::format("{}", value), "a negative number");
        } else if (expect_ != Expect::Ignored) {
            typeError(start, fmt::format("number {}", value));
        }
        return endValue();
    }

    bool number_float(number_float_t /*value*/, string_t const& token) {
        std::size_t const start = at_.tokenStart();
        expectation();
        if (isEnumeration()) {
            if (token.find_first_of(".eE") != std::string::npos)
                notAnEnumerationNumber(start, excerpt(token), "a floating-point number");
            else if (token.front() == '-')
                notAnEnumerationNumber(start, excerpt(token), "a negative number");
            else
                error(start, messages::outOfRange(excerpt(token)));
        } else if (expect_ != Expect::Ignored) {
            typeError(start, "number " + excerpt(token));
        }
        return endValue();
    }

    bool string(string_t& value) {
        std::size_t const start = at_.tokenStart();
        expectation();
        switch (expect_) {
            case Expect::String:
                if (frames_.back().kind == FrameKind::Strings) {
                    auto& list = std::get<StringList>(*frames_.back().list);
                    toUtf16(value, list.emplace_back());
                } else {
                    toUtf16(value, assign(start).emplace<std::u16string>());
                }
                break;
            case Expect::EnumerationValue:
            case Expect::Enumeration: enumerationKey(start, value); break;
            case Expect::Ignored:
            case Expect::SchemaName: break;
            default: typeError(start, "string " + excerpt(at_.rawFrom(start))); break;
        }
        if (value.capacity() > releasedTokenSize) string_t().swap(value);
        return endValue();
    }

    bool binary(binary_t& /*value*/) { return true; }  // never produced from JSON text

    bool start_object(std::size_t /*size*/) {
        std::size_t const start = at_.containerStart();
        if (!withinNesting(start)) return false;
        expectation();
        switch (expect_) {
            case Expect::Page: openRecord(start, root_); break;
            case Expect::Record: {
                auto& nodes = assign(start).emplace<NodeList>();
                nodes.push_back(PageNode{&entry_->elementTable(), {}, start});
                openRecord(start, nodes.back());
                break;
            }
            case Expect::RecordElement: {
                Frame& list = frames_.back();
                auto& nodes = std::get<NodeList>(*list.list);
                nodes.push_back(PageNode{&list.entry->elementTable(), {}, start});
                openRecord(start, nodes.back());
                break;
            }
            case Expect::Ignored: frames_.push_back(Frame{FrameKind::Ignored, start}); break;
            default: openIgnored(start, "object"); break;
        }
        return true;
    }

    bool key(string_t& key) {
        std::size_t const start = at_.tokenStart();
        Frame& frame = frames_.back();
        if (frame.kind != FrameKind::Record) return true;  // no path inside values not kept
        path_.push_back(key);
        if (frames_.size() == 1 && key == schemaKey) return schemaName(start, frame, key);
        PropertyTable const& table = *frame.node->table;
        PropertyEntry const* const entry = table.find(key);
        frame.keepValue = false;
        if (entry != nullptr) {
            auto const index = static_cast<std::size_t>(entry - table.entries.data());
            std::uint64_t const bit = index < 64 ? std::uint64_t{1} << index : 0;
            bool const repeated = bit != 0 ? (frame.seen & bit) != 0 : !otherKey(frame, key);
            frame.seen |= bit;
            if (repeated) {
                error(start, messages::duplicateKey(key));
            } else {
                frame.entry = entry;
                frame.keepValue = true;
            }
        } else if (!otherKey(frame, key)) {
            error(start, messages::duplicateKey(key));
        } else if (!errors_.full()) {
            error(start, messages::unknownKey(key, table));
        } else {
            error(start, {});
        }
        return true;
    }

    bool end_object() { return closeContainer(); }

    bool start_array(std::size_t /*size*/) {
        std::size_t const start = at_.containerStart();
        if (!withinNesting(start)) return false;
        expectation();
        switch (expect_) {
            case Expect::StringList: openList(start, FrameKind::Strings).emplace<StringList>(); return true;
            case Expect::RecordList: openList(start, FrameKind::Records).emplace<NodeList>(); return true;
            case Expect::Enumeration:
                openList(start, FrameKind::Enumerations).emplace<EnumerationValues>();
                return true;
            case Expect::Ignored: frames_.push_back(Frame{FrameKind::Ignored, start}); return true;
            default: openIgnored(start, "array"); return true;
        }
    }

    bool end_array() { return closeContainer(); }

    template <class Exception>
    bool parse_error(std::size_t position, std::string const& /*token*/, Exception const& exception) {
        // A number out of a double's range is refused after it was read: point at its start.
        std::size_t offset = at_.base() + (position == 0 ? 0 : position - 1);
        if constexpr (std::is_same_v<Exception, nlohmann::detail::out_of_range>) offset = at_.tokenStart();
        malformedAt(offset, at_.atNul() ? "malformed JSON: a NUL byte in the text"
                                        : "malformed JSON: " + parseReason(exception.what()));
        return false;
    }

private:
    bool withinNesting(std::size_t start) {
        if (frames_.size() < maxNesting) return true;
        malformedAt(start, fmt::format("nesting deeper than {} levels", maxNesting), pointer());
        return false;
    }

    /// Sets expect_ (and entry_) for the value starting at `start`, and its path segment.
    void expectation() {
        entry_ = nullptr;
        if (frames_.empty()) {
            expect_ = Expect::Page;
            return;
        }
        Frame& parent = frames_.back();
        if (parent.kind != FrameKind::Record && parent.kind != FrameKind::Ignored)
            path_.push_back(std::to_string(parent.elements));
        ++parent.elements;
        switch (parent.kind) {
            case FrameKind::Ignored: expect_ = Expect::Ignored; return;
            case FrameKind::Strings: expect_ = Expect::String; return;
            case FrameKind::Enumerations:
                expect_ = Expect::EnumerationValue;
                entry_ = parent.entry;
                return;
            case FrameKind::Records: expect_ = Expect::RecordElement; return;
            case FrameKind::Record: break;
        }
        if (schemaNext_) {
            schemaNext_ = false;
            expect_ = Expect::SchemaName;
            return;
        }
        if (!parent.keepValue) {
            expect_ = Expect::Ignored;
            return;
        }
        entry_ = parent.entry;
        switch (entry_->kind) {
            case PropertyKind::String: expect_ = Expect::String; return;
            case PropertyKind::Bool: expect_ = Expect::Bool; return;
            case PropertyKind::Enumeration: expect_ = Expect::Enumeration; return;
            case PropertyKind::StringList: expect_ = Expect::StringList; return;
            case PropertyKind::ObjectArray: expect_ = Expect::RecordList; return;
            case PropertyKind::Record: expect_ = Expect::Record; return;
        }
    }

    /// The page's "$schema" key: its value must be a string, and is dropped.
    bool schemaName(std::size_t start, Frame& frame, std::string const& key) {
        frame.keepValue = false;
        if (otherKey(frame, key))
            schemaNext_ = true;
        else
            error(start, messages::duplicateKey(key));
        return true;
    }

    bool isEnumeration() const { return expect_ == Expect::Enumeration || expect_ == Expect::EnumerationValue; }

    std::string_view expectedText() const {
        switch (expect_) {
            case Expect::Page: return "an object (a page)";
            case Expect::String: return "a string";
            case Expect::SchemaName: return "a string (the schema's URI)";
            case Expect::Bool: return "a bool";
            case Expect::StringList: return "an array of strings";
            case Expect::RecordList: return "an array of objects";
            case Expect::RecordElement:
            case Expect::Record: return "an object";
            default: return {};
        }
    }

    void typeError(std::size_t start, std::string const& found) {
        error(start, isEnumeration() ? messages::notAnEnumeration(*entry_->enumeration, found)
                                     : messages::wrongType(expectedText(), found));
    }

    /// Opens a container that is not kept, whose type error quotes it once it ends.
    void openIgnored(std::size_t start, std::string_view type) {
        typeError(start, std::string(type));
        Frame frame{FrameKind::Ignored, start};
        frame.typeError = lastError_;
        frames_.push_back(std::move(frame));
    }

    void openRecord(std::size_t start, PageNode& node) {
        Frame frame{FrameKind::Record, start};
        frame.node = &node;
        node.assignments.reserve(node.table->entries.size());
        frames_.push_back(std::move(frame));
    }

    NodeValue& openList(std::size_t start, FrameKind kind) {
        NodeValue& list = assign(start);
        Frame frame{kind, start};
        frame.entry = entry_;
        frame.list = &list;
        frames_.push_back(std::move(frame));
        return list;
    }

    /// A new assignment of the innermost record, for its last key.
    NodeValue& assign(std::size_t start) {
        Frame& frame = frames_.back();
        frame.node->assignments.push_back(Assignment{frame.entry, {}, start});
        return frame.node->assignments.back().value;
    }

    static void toUtf16(std::string const& utf8, std::u16string& text) {
        // The lexer has checked the UTF-8 and the surrogate escapes.
        // A UTF-8 text never has fewer bytes than its UTF-16 form has code units.
        std::size_t const before = text.size();
        text.resize(before + utf8.size());
        char16_t* const end = utf8::unchecked::utf8to16(utf8.begin(), utf8.end(), text.data() + before);
        text.resize(static_cast<std::size_t>(end - text.data()));
        if (text.capacity() - text.size() > releasedTokenSize) text.shrink_to_fit();
    }

    /// False when the record already had `key` among the keys not in its table.
    static bool otherKey(Frame& frame, std::string const& key) {
        if (!frame.otherKeys) frame.otherKeys = std::make_unique<std::unordered_set<std::string>>();
        return frame.otherKeys->insert(key).second;
    }

    std::vector<std::uint32_t>* enumerationSlot(std::size_t start) {
        if (expect_ == Expect::EnumerationValue) {
            auto& values = std::get<EnumerationValues>(*frames_.back().list);
            values.push_back(0);
            return &values;
        }
        auto& values = assign(start).emplace<EnumerationValues>();
        values.push_back(0);
        return &values;
    }

    void enumerationKey(std::size_t start, std::string const& key) {
        EnumerationInfo const& info = *entry_->enumeration;
        std::uint32_t const value = info.keyToValue(key);
        enumerationSlot(start)->back() = value;
        if (info.namesMember(key)) return;
        if (warnings_.full()) return warning(start, {});
        warning(start, messages::keyNamesNoMember(info, key, value));
    }

    void enumerationNumber(std::size_t start, std::uint32_t value) {
        EnumerationInfo const& info = *entry_->enumeration;
        enumerationSlot(start)->back() = value;
        if (info.hasMember(value)) return;
        warning(start, messages::numberNamesNoMember(info, value));
    }

    void notAnEnumerationNumber(std::size_t start, std::string const& number, std::string_view what) {
        error(start, messages::notAnEnumerationNumber(*entry_->enumeration, number, what));
    }

    bool closeContainer() {
        at_.containerEnd();
        Frame& frame = frames_.back();
        if (frame.typeError != none) {
            std::string_view const raw = at_.rawFrom(frame.start);
            auto& message = errors_.kept()[frame.typeError].error.message;
            message += ' ';
            message += excerpt(raw);
        }
        if (frame.kind == FrameKind::Record && frame.node->assignments.size() < frame.node->assignments.capacity())
            frame.node->assignments.shrink_to_fit();
        if (frame.kind == FrameKind::Records) std::get<NodeList>(*frame.list).shrink_to_fit();
        frames_.pop_back();
        if (frames_.empty()) endOfValue_ = at_.taken();
        return endValue();
    }

    /// The value just read is complete: its path segment goes.
    bool endValue() {
        if (frames_.empty()) {
            endOfValue_ = at_.taken();
            return true;
        }
        Frame& parent = frames_.back();
        if (parent.kind == FrameKind::Ignored) return true;  // no path inside values not kept
        parent.keepValue = false;
        path_.pop_back();
        return true;
    }

    void error(std::size_t offset, std::string message) {
        lastError_ = errors_.full() ? errors_.add(source_, {}, {}, offset)
                                    : errors_.add(source_, pointer(), std::move(message), offset);
    }
    void warning(std::size_t offset, std::string message) {
        if (warnings_.full())
            warnings_.add(source_, {}, {}, offset);
        else
            warnings_.add(source_, pointer(), std::move(message), offset);
    }

    TokenPositions& at_;
    std::string_view source_;
    PageNode& root_;
    std::size_t endOfValue_ = none;  ///< in the text the parser reads, once the page's value has ended
    std::vector<Frame> frames_;  ///< open containers, outermost first
    Pointer path_;               ///< pointer of the value being read
    Expect expect_ = Expect::Page;
    PropertyEntry const* entry_ = nullptr;  ///< the property of the value being read, when kept
    Findings& errors_;    ///< the caller's
    Findings& warnings_;  ///< the caller's
    std::size_t lastError_ = none;
    bool malformed_ = false;
    bool schemaNext_ = false;  ///< the value now starting is the page's "$schema"
};

void read(std::string_view text, std::string_view source, PageNode& root, ReadFindings& findings) {
    std::size_t const base = text.starts_with(utf8Mark) ? utf8Mark.size() : 0;
    std::string_view const body = text.substr(base);
    TokenPositions positions(body, base);
    PageReader reader(positions, source, root, findings);
    try {
        if (std::string_view const encoding = foreignEncoding(text); !encoding.empty()) {
            reader.malformedAt(0, fmt::format("file is {}, pages must be UTF-8", encoding));
            return;
        }
        parseEvents(body, positions, reader);
        if (reader.malformed()) return;
        // The lexer ends at a NUL byte as at the end of the text: what follows the value must be whitespace.
        std::size_t const end = reader.endOfValue();
        std::size_t const rest = end == none ? body.size() : body.find_first_not_of(" \t\n\r", end);
        if (rest != std::string_view::npos)
            reader.malformedAt(base + rest, body[rest] == '\0' ? "malformed JSON: a NUL byte after the page's value"
                                                               : "malformed JSON: text after the page's value");
    } catch (std::bad_alloc const&) {
        findings.pointer = reader.pointer();
        throw;
    }
}

}  // namespace

void readPageText(std::string_view text, std::string_view source, PageNode& root, ReadFindings& findings) {
    read(text, source, root, findings);
}

}  // namespace refpage
