#include <fmt/format.h>
#include <utf8.h>

#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <nlohmann/json.hpp>
#include <reference/property/RefItem.hpp>
#include <refpage/format/Parser.hpp>
#include <refpage/support/Escape.hpp>
#include <string>
#include <type_traits>
#include <unordered_set>
#include <vector>

#include "Findings.hpp"
#include <refpage/support/Suggestion.hpp>

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

/// A pointer over the text that counts the bytes the lexer has taken from it.
class CountingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = char const*;
    using reference = char const&;

    CountingIterator(char const* at, std::size_t* taken) : at_(at), taken_(taken) {}
    reference operator*() const { return *at_; }
    CountingIterator& operator++() {
        ++at_;
        ++*taken_;
        return *this;
    }
    CountingIterator operator++(int) {
        CountingIterator const before = *this;
        ++*this;
        return before;
    }
    bool operator==(CountingIterator const& other) const { return at_ == other.at_; }
    bool operator!=(CountingIterator const& other) const { return at_ != other.at_; }

private:
    char const* at_;
    std::size_t* taken_;  ///< shared by every copy: the lexer's copy is the one that moves
};

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

std::string_view article(std::string_view word) {
    return !word.empty() && std::string_view("AEIOU").find(word.front()) != std::string_view::npos ? "an" : "a";
}

std::string describeRecord(PropertyTable const& table) {
    std::string_view const name = table.qualifiedName;
    std::string_view const shortName = name.substr(name.rfind('.') + 1);
    return fmt::format("{} {} record", article(shortName), shortName);
}

/// The parser's reason without its own prefix and position, safe to print.
std::string parseReason(std::string_view what) {
    std::size_t const column = what.find("column ");
    if (column != std::string_view::npos) {
        std::size_t const colon = what.find(": ", column);
        if (colon != std::string_view::npos) return excerpt(what.substr(colon + 2), 200);
    }
    std::size_t const bracket = what.find("] ");
    return excerpt(bracket == std::string_view::npos ? what : what.substr(bracket + 2), 200);
}

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

    PageReader(std::string_view text, std::size_t base, std::string_view source, PageNode& root)
        : text_(text), base_(base), source_(source), root_(root) {}

    std::size_t* taken() { return &taken_; }
    Findings& errors() { return errors_; }
    Findings& warnings() { return warnings_; }
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
        std::size_t const start = tokenStart();
        expectation();
        if (expect_ != Expect::Ignored) typeError(start, "null");
        return endValue();
    }

    bool boolean(bool value) {
        std::size_t const start = tokenStart();
        expectation();
        if (expect_ == Expect::Bool)
            assign(start).emplace<bool>(value);
        else if (expect_ != Expect::Ignored)
            typeError(start, value ? "boolean true" : "boolean false");
        return endValue();
    }

    bool number_unsigned(number_unsigned_t value) {
        std::size_t const start = tokenStart();
        expectation();
        if (isEnumeration()) {
            if (value > std::numeric_limits<std::uint32_t>::max())
                error(start, fmt::format("{} is outside the unsigned 32-bit range", value));
            else
                enumerationNumber(start, static_cast<std::uint32_t>(value));
        } else if (expect_ != Expect::Ignored) {
            typeError(start, fmt::format("number {}", value));
        }
        return endValue();
    }

    bool number_integer(number_integer_t value) {
        std::size_t const start = tokenStart();
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
        std::size_t const start = tokenStart();
        expectation();
        if (isEnumeration()) {
            if (token.find_first_of(".eE") != std::string::npos)
                notAnEnumerationNumber(start, excerpt(token), "a floating-point number");
            else if (token.front() == '-')
                notAnEnumerationNumber(start, excerpt(token), "a negative number");
            else
                error(start, fmt::format("{} is outside the unsigned 32-bit range", excerpt(token)));
        } else if (expect_ != Expect::Ignored) {
            typeError(start, "number " + excerpt(token));
        }
        return endValue();
    }

    bool string(string_t& value) {
        std::size_t const start = tokenStart();
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
            default: typeError(start, "string " + excerpt(rawFrom(start))); break;
        }
        if (value.capacity() > releasedTokenSize) string_t().swap(value);
        return endValue();
    }

    bool binary(binary_t& /*value*/) { return true; }  // never produced from JSON text

    bool start_object(std::size_t /*size*/) {
        std::size_t const start = base_ + taken_ - 1;
        prevEnd_ = taken_;
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
        std::size_t const start = tokenStart();
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
                error(start, "duplicate key " + refpage::quoted(key));
            } else {
                frame.entry = entry;
                frame.keepValue = true;
            }
        } else if (!otherKey(frame, key)) {
            error(start, "duplicate key " + refpage::quoted(key));
        } else if (!errors_.full()) {
            std::string message = fmt::format("unknown key {} in {}", refpage::quoted(key), describeRecord(table));
            std::vector<std::string_view> words;
            for (PropertyEntry const& candidate : table.entries) words.push_back(candidate.word);
            if (auto const nearest = nearestWord(key, words))
                message += fmt::format("; did you mean {}?", refpage::quoted(*nearest));
            error(start, std::move(message));
        } else {
            error(start, {});
        }
        return true;
    }

    bool end_object() { return closeContainer(); }

    bool start_array(std::size_t /*size*/) {
        std::size_t const start = base_ + taken_ - 1;
        prevEnd_ = taken_;
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
        std::size_t offset = position == 0 ? 0 : position - 1;
        if constexpr (std::is_same_v<Exception, nlohmann::detail::out_of_range>) offset = tokenStart() - base_;
        bool const atNul = taken_ > 0 && taken_ <= text_.size() && text_[taken_ - 1] == '\0';
        malformedAt(base_ + offset, atNul ? "malformed JSON: a NUL byte in the text"
                                          : "malformed JSON: " + parseReason(exception.what()));
        return false;
    }

private:
    /// The offset of the token just read: the first byte after the previous token that
    /// is not whitespace, "," or ":". Moves the previous token's end to this one's.
    std::size_t tokenStart() {
        std::size_t at = prevEnd_;
        while (at < taken_ && std::string_view(" \t\n\r,:").find(text_[at]) != std::string_view::npos) ++at;
        prevEnd_ = taken_;
        return base_ + at;
    }

    /// The raw text of the token that starts at `start` and ends where the lexer is.
    std::string_view rawFrom(std::size_t start) const {
        return text_.substr(start - base_, base_ + taken_ - start);
    }

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
            error(start, "duplicate key " + refpage::quoted(key));
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
        if (isEnumeration()) {
            error(start, fmt::format("expected {} {} key or an unsigned 32-bit number, found {}",
                                     article(entry_->enumeration->className), entry_->enumeration->className, found));
            return;
        }
        error(start, fmt::format("expected {}, found {}", expectedText(), found));
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
        std::string message = fmt::format("{} names no member of {}; stored {} ({})", refpage::quoted(key),
                                          info.className, value, info.displayText(value));
        std::vector<std::string_view> keys;
        for (auto const& member : info.members) keys.push_back(member.key);
        if (auto const nearest = nearestWord(key, keys))
            message += fmt::format("; did you mean {}?", refpage::quoted(*nearest));
        warning(start, std::move(message));
    }

    void enumerationNumber(std::size_t start, std::uint32_t value) {
        EnumerationInfo const& info = *entry_->enumeration;
        enumerationSlot(start)->back() = value;
        if (info.hasMember(value)) return;
        warning(start, fmt::format("{} names no member of {}; stored {} ({})", value, info.className, value,
                                   info.displayText(value)));
    }

    void notAnEnumerationNumber(std::size_t start, std::string const& number, std::string_view what) {
        error(start, fmt::format("{} is {}; expected {} {} key or an unsigned 32-bit number", number, what,
                                 article(entry_->enumeration->className), entry_->enumeration->className));
    }

    bool closeContainer() {
        prevEnd_ = taken_;
        Frame& frame = frames_.back();
        if (frame.typeError != none) {
            std::string_view const raw = text_.substr(frame.start - base_, base_ + taken_ - frame.start);
            auto& message = errors_.kept()[frame.typeError].error.message;
            message += ' ';
            message += excerpt(raw);
        }
        if (frame.kind == FrameKind::Record && frame.node->assignments.size() < frame.node->assignments.capacity())
            frame.node->assignments.shrink_to_fit();
        if (frame.kind == FrameKind::Records) std::get<NodeList>(*frame.list).shrink_to_fit();
        frames_.pop_back();
        if (frames_.empty()) endOfValue_ = taken_;
        return endValue();
    }

    /// The value just read is complete: its path segment goes.
    bool endValue() {
        if (frames_.empty()) {
            endOfValue_ = taken_;
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

    std::string_view text_;  ///< the text the lexer reads (after a byte order mark)
    std::size_t base_;       ///< offset of text_ in the page text
    std::string_view source_;
    PageNode& root_;
    std::size_t taken_ = 0;    ///< bytes of text_ the lexer has taken
    std::size_t prevEnd_ = 0;  ///< where the previous token ended, in text_
    std::size_t endOfValue_ = none;
    std::vector<Frame> frames_;  ///< open containers, outermost first
    Pointer path_;               ///< pointer of the value being read
    Expect expect_ = Expect::Page;
    PropertyEntry const* entry_ = nullptr;  ///< the property of the value being read, when kept
    Findings errors_;
    Findings warnings_;
    std::size_t lastError_ = none;
    bool malformed_ = false;
    bool schemaNext_ = false;  ///< the value now starting is the page's "$schema"
};

/// The encoding a byte order mark names, or empty for none and UTF-8's.
std::string_view foreignEncoding(std::string_view text) {
    using namespace std::string_view_literals;
    if (text.starts_with("\xFF\xFE\0\0"sv)) return "UTF-32 (little-endian)";
    if (text.starts_with("\0\0\xFE\xFF"sv)) return "UTF-32 (big-endian)";
    if (text.starts_with("\xFF\xFE"sv)) return "UTF-16 (little-endian)";
    if (text.starts_with("\xFE\xFF"sv)) return "UTF-16 (big-endian)";
    return {};
}

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

void read(std::string_view text, PageReader& reader) {
    std::size_t const base = text.starts_with(utf8Mark) ? utf8Mark.size() : 0;
    std::string_view const body = text.substr(base);
    if (std::string_view const encoding = foreignEncoding(text); !encoding.empty()) {
        reader.malformedAt(0, fmt::format("file is {}, pages must be UTF-8", encoding));
        return;
    }
    CountingIterator const first(body.data(), reader.taken());
    CountingIterator const last(body.data() + body.size(), reader.taken());
    Json::sax_parse(first, last, &reader, nlohmann::detail::input_format_t::json, true);
    if (reader.malformed()) return;
    // The lexer ends at a NUL byte as at the end of the text: what follows the value must be whitespace.
    std::size_t const end = reader.endOfValue();
    std::size_t const rest = end == none ? body.size() : body.find_first_not_of(" \t\n\r", end);
    if (rest != std::string_view::npos)
        reader.malformedAt(base + rest, body[rest] == '\0' ? "malformed JSON: a NUL byte after the page's value"
                                                           : "malformed JSON: text after the page's value");
}

}  // namespace

ParsedPage parsePage(std::string_view text, std::string_view source, LoadOptions const& options) {
    ParsedPage page;
    page.root.table = &reference::glue::tableOf<reference::property::RefItem>();
    std::size_t const base = text.starts_with(utf8Mark) ? utf8Mark.size() : 0;
    try {
        PageReader reader(text.substr(base), base, source, page.root);
        std::string where;
        try {
            read(text, reader);
        } catch (std::bad_alloc const&) {
            page.root.assignments = {};
            where = reader.pointer();
            reader.malformedAt(0, "out of memory while reading the page", std::move(where));
        }
        Locator locator(text);
        page.errors = reader.errors().resolve(source, locator);
        page.warnings = reader.warnings().resolve(source, locator);
    } catch (std::bad_alloc const&) {
        page = ParsedPage{};
        page.root.table = &reference::glue::tableOf<reference::property::RefItem>();
        page.errors.push_back(PageError{std::string(source), {}, "out of memory while reading the page"});
    }
    if (!page.errors.empty()) page.root.assignments = {};
    if (options.strict) {
        for (auto& warning : page.warnings) {
            warning.message += " (strict mode)";
            page.errors.push_back(std::move(warning));
        }
        page.warnings.clear();
    }
    return page;
}

}  // namespace refpage
