#include <fmt/format.h>
#include <utf8.h>

#include <algorithm>
#include <new>
#include <nlohmann/json.hpp>
#include <ovrin/array.hpp>
#include <reference/glue/Properties.hpp>
#include <refpage/format/Check.hpp>
#include <refpage/format/Digest.hpp>
#include <refpage/support/Parallel.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/support/TextPosition.hpp>
#include <refpage/format/Writer.hpp>
#include <refpage/support/Escape.hpp>
#include <span>
#include <type_traits>

#include "NativeFields.hpp"
#include "RecordViews.hpp"

namespace refpage {

namespace {

using Pointer = nlohmann::json_pointer<std::string>;

/// A difference found, before its position is known.
struct Difference {
    std::string path;
    std::string message;
    std::size_t offset;  ///< of the input value (or of its record, for a key the input left out)
};

template <class T>
struct IsVector : std::false_type {};
template <class T>
struct IsVector<std::vector<T>> : std::true_type {};

/// At most 40 code units of a text, for a message.
std::string show(std::u16string_view text) {
    std::u16string_view const shown = text.substr(0, 40);
    std::string utf8;
    try {
        utf8 = utf8::utf16to8(shown);
    } catch (utf8::exception const&) {
        return "(a text with an unpaired surrogate)";
    }
    return refpage::quoted(utf8) + (shown.size() < text.size() ? "..." : "");
}

/// Compares a record as the input gave it with the record as one kind of getter reads it.
class Comparison {
public:
    Comparison(std::string_view what, std::vector<Difference>& differences, std::size_t& count)
        : what_(what), differences_(differences), count_(count) {}

    /// Through the host getters of the glue's property table.
    void host(PageNode const& node, void const* record) {
        for (PropertyEntry const& entry : node.table->entries) {
            Assignment const* const assignment = assignmentOf(node, entry);
            std::size_t const offset = assignment != nullptr ? assignment->offset : node.offset;
            path_.push_back(Step{entry.word, 0});
            switch (entry.kind) {
                case PropertyKind::String: text(offset, assignment, entry.strings().get(record)); break;
                case PropertyKind::Bool: flag(offset, assignment, entry.flag().get(record)); break;
                case PropertyKind::Enumeration:
                    enumeration(offset, assignment, entry,
                                reference::glue::enumerationValues(entry.arrays().get(record)));
                    break;
                case PropertyKind::StringList: {
                    oxArray_tag const* const array = entry.arrays().get(record);
                    texts(offset, assignment, oxGetNumberOfElements(array),
                          [array](std::size_t i) -> std::u16string const& { return oxGetStringElement(array, i); });
                    break;
                }
                case PropertyKind::ObjectArray:
                case PropertyKind::Record: {
                    oxArray_tag const* const array = entry.arrays().get(record);
                    records(offset, assignment, entry, oxGetNumberOfElements(array),
                            [this, array, &entry](PageNode const& child, std::size_t i) {
                                ocos::COSInterfacePtr const object = omGetArrayElement(array, i);
                                host(child, reference::glue::recordOf(*object.get(), entry.elementTable()));
                            });
                    break;
                }
            }
            path_.pop_back();
        }
    }

    /// Through the native getters of the record's class.
    template <class Record>
    void native(PageNode const& node, Record const& record) {
        native::visitFields(record, [this, &node](std::string_view word, auto const& value) {
            PropertyEntry const& entry = *node.table->find(word);
            Assignment const* const assignment = assignmentOf(node, entry);
            std::size_t const offset = assignment != nullptr ? assignment->offset : node.offset;
            path_.push_back(Step{word, 0});
            using Value = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<Value, std::u16string>) {
                text(offset, assignment, value);
            } else if constexpr (std::is_same_v<Value, bool>) {
                flag(offset, assignment, value);
            } else if constexpr (std::is_enum_v<Value>) {
                std::uint32_t const number = value;
                enumeration(offset, assignment, entry, std::span(&number, 1));
            } else if constexpr (std::is_same_v<Value, std::vector<std::u16string>>) {
                texts(offset, assignment, value.size(), [&value](std::size_t i) -> auto const& { return value[i]; });
            } else if constexpr (IsVector<Value>::value) {
                records(offset, assignment, entry, value.size(),
                        [this, &value](PageNode const& child, std::size_t i) { native(child, value[i]); });
            } else {
                records(offset, assignment, entry, 1,
                        [this, &value](PageNode const& child, std::size_t) { native(child, value); });
            }
            path_.pop_back();
        });
    }

private:
    void differ(std::size_t offset, std::string message) {
        Pointer pointer;
        for (Step const& step : path_) pointer.push_back(step.word.empty() ? std::to_string(step.index) : std::string(step.word));
        differences_.push_back(Difference{pointer.to_string(), fmt::format("{}: {}", what_, message), offset});
    }

    void text(std::size_t offset, Assignment const* assignment, std::u16string_view actual) {
        ++count_;
        std::u16string_view const expected =
            assignment != nullptr ? std::u16string_view(std::get<std::u16string>(assignment->value)) : u"";
        if (expected != actual) differ(offset, fmt::format("expected {}, found {}", show(expected), show(actual)));
    }

    void flag(std::size_t offset, Assignment const* assignment, bool actual) {
        ++count_;
        bool const expected = assignment != nullptr && std::get<bool>(assignment->value);
        if (expected != actual) differ(offset, fmt::format("expected {}, found {}", expected, actual));
    }

    void enumeration(std::size_t offset, Assignment const* assignment, PropertyEntry const& entry,
                     std::span<std::uint32_t const> actual) {
        ++count_;
        std::uint32_t const initial = entry.enumeration->keyToValue(entry.enumeration->defaultKey);
        std::span<std::uint32_t const> const expected =
            assignment != nullptr ? std::span<std::uint32_t const>(std::get<EnumerationValues>(assignment->value))
                                  : std::span(&initial, 1);
        if (!std::equal(expected.begin(), expected.end(), actual.begin(), actual.end()))
            differ(offset, fmt::format("expected {}, found {}", fmt::join(expected, ", "), fmt::join(actual, ", ")));
    }

    template <class Element>
    void texts(std::size_t offset, Assignment const* assignment, std::size_t count, Element element) {
        static StringList const none;
        StringList const& expected = assignment != nullptr ? std::get<StringList>(assignment->value) : none;
        if (!sameCount(offset, expected.size(), count)) return;
        for (std::size_t i = 0; i < count; ++i) {
            path_.push_back(Step{{}, i});
            Assignment const item{nullptr, expected[i], offset};
            text(offset, &item, element(i));
            path_.pop_back();
        }
    }

    /// `visit(expectedChild, i)` for each of `count` records; a single record's absent
    /// key expects the record as constructed.
    template <class Visit>
    void records(std::size_t offset, Assignment const* assignment, PropertyEntry const& entry, std::size_t count,
                 Visit visit) {
        if (entry.kind == PropertyKind::Record && assignment == nullptr) {
            visit(PageNode{&entry.elementTable(), {}, offset}, 0);
            return;
        }
        static NodeList const none;
        NodeList const& expected = assignment != nullptr ? std::get<NodeList>(assignment->value) : none;
        if (entry.kind == PropertyKind::Record) {
            visit(expected.front(), 0);
            return;
        }
        if (!sameCount(offset, expected.size(), count)) return;
        for (std::size_t i = 0; i < count; ++i) {
            path_.push_back(Step{{}, i});
            visit(expected[i], i);
            path_.pop_back();
        }
    }

    bool sameCount(std::size_t offset, std::size_t expected, std::size_t actual) {
        ++count_;
        if (expected != actual) differ(offset, fmt::format("{} elements expected, found {}", expected, actual));
        return expected == actual;
    }

    std::string_view what_;
    std::vector<Difference>& differences_;
    std::size_t& count_;
    /// One step of the path to the value compared: a key, or else an index. The pointer is
    /// spelled out only for a difference, so that equal values cost no text.
    struct Step {
        std::string_view word;
        std::size_t index;
    };
    std::vector<Step> path_;
};

class PageChecker {
public:
    PageChecker(std::string_view source, CheckReport& report) : source_(source), report_(report) {}

    /// Checks `text`; releases `owned` (which holds `text` when not null) once it is no longer
    /// needed. Hands the loaded page to `keep` when given and the page passed, else releases
    /// it as soon as it can; `keep` is set only as the last step.
    void check(std::string_view text, std::string* owned, LoadOptions const& options, LoadResult* keep) {
        stage_ = "reading the page";
        ParsedPage parsed = parsePage(text, source_, options);
        report_.warnings = std::move(parsed.warnings);
        if (!parsed.ok()) {
            report_.failures = std::move(parsed.errors);
            return;
        }
        stage_ = "building the page through the host";
        LoadResult loaded = buildPage(parsed, source_, text);
        if (!loaded.ok()) {
            report_.failures = loaded.errors;
            return;
        }
        stage_ = "comparing the page with its input";
        compareWithInput(parsed.root, loaded, text);
        parsed.root = PageNode{};

        stage_ = "copying the page";
        report_.comparisons.push_back(copied);
        {
            reference::property::RefItem const& page = nativePage(loaded.page.get());
            if (!(page.copy() == page)) fail({}, "a copy of the page differs from it");
        }

        stage_ = "writing the page out and reading it again";
        report_.comparisons.push_back(reloaded);
        // The page is written out piece by piece, each piece compared with the text it was read
        // from as it comes. A page already in the written form was read from this very text, and
        // that reading equals the page: nothing of the written text is kept or read again. Only
        // when the two part is the written text kept (its start is the text's), to be read again.
        std::string written;
        std::size_t matched = 0;
        bool parted = false;
        writePageText(loaded.page.get(), [&](std::string_view piece) {
            if (!parted) {
                if (text.substr(matched, piece.size()) == piece) {
                    matched += piece.size();
                    return;
                }
                parted = true;
                written.reserve(text.size() + text.size() / 8);
                written.assign(text.substr(0, matched));
            }
            written += piece;
        });
        bool const inWrittenForm =
            !parted && text.find_first_not_of(" \t\n\r", matched) == std::string_view::npos;
        if (!inWrittenForm && !parted) written.assign(text.substr(0, matched));
        if (owned != nullptr) {
            std::string().swap(*owned);
            text = {};
        }
        // Otherwise the written text is read back against a digest of the page's values, and
        // the page, unless it is kept, is released before that reading.
        std::size_t const digest = inWrittenForm ? 0 : valuesDigest(loaded.page.get());
        if (keep == nullptr) loaded = LoadResult{};
        if (!inWrittenForm) compareWithWritten(written, digest);
        if (keep != nullptr && report_.passed()) *keep = std::move(loaded);
    }

    std::string_view stage() const { return stage_; }

    void fail(std::string path, std::string message, std::size_t line = 0, std::size_t column = 0) {
        report_.failures.push_back(PageError{std::string(source_), std::move(path), std::move(message), line, column});
    }

private:
    void compareWithInput(PageNode const& root, LoadResult const& loaded, std::string_view text) {
        std::vector<Difference> differences;
        ocos::COSInterfacePtr const object = reference::glue::objectOf(loaded.page.get());
        report_.comparisons.push_back(readThroughHost);
        Comparison(readThroughHost, differences, report_.valuesCompared)
            .host(root, reference::glue::recordOf(*object.get(), *root.table));
        report_.comparisons.push_back(readThroughNative);
        Comparison(readThroughNative, differences, report_.valuesCompared).native(root, nativePage(loaded.page.get()));
        report(differences, text);
    }

    /// Fails with the first differences, at their line and column in `text` when it is given.
    void report(std::vector<Difference>& differences, std::string_view text) {
        for (std::size_t i = 0; i < differences.size() && i < maxReported; ++i) {
            TextPosition const position = text.empty() ? TextPosition{0, 0} : positionOf(text, differences[i].offset);
            fail(std::move(differences[i].path), std::move(differences[i].message), position.line, position.column);
        }
        if (differences.size() > maxReported)
            fail({}, fmt::format("{} more not listed", differences.size() - maxReported));
    }

    /// Reads the written text back: it must hold values of the same `digest` as the page.
    void compareWithWritten(std::string_view written, std::size_t digest) {
        ParsedPage const again = parsePage(written, source_);
        for (PageError const& error : again.errors)
            fail(error.path, fmt::format("{}: {} (line {}, column {} of the written text)", reloaded, error.message,
                                         error.line, error.column));
        if (!again.ok()) return;
        if (valuesDigest(again.root) != digest) fail({}, fmt::format("{}: the page reads back with other values", reloaded));
    }

    std::string_view source_;
    CheckReport& report_;
    std::string_view stage_;
};

/// Checks `text` (held by `owned` when not null, released as soon as it can be), handing the
/// page to `keep` when it passes; running out of memory anywhere is the page's one failure.
CheckReport checkText(std::string_view text, std::string* owned, std::string_view source, LoadOptions const& options,
                      LoadResult* keep) {
    CheckReport report;
    std::string_view stage;
    try {
        PageChecker checker(source, report);
        try {
            checker.check(text, owned, options, keep);
            return report;
        } catch (std::bad_alloc const&) {
            stage = checker.stage();
        } catch (std::exception const& e) {
            checker.fail({}, fmt::format("check failed while {}: {}", checker.stage(), e.what()));
            return report;
        }
    } catch (std::bad_alloc const&) {
        stage = "checking the page";
    }
    // Everything the check held is released by now.
    report = CheckReport{};
    report.failures.push_back(PageError{std::string(source), {}, fmt::format("out of memory while {}", stage)});
    return report;
}

}  // namespace

CheckReport checkPage(std::string_view text, std::string_view source, LoadOptions const& options) {
    return checkText(text, nullptr, source, options, nullptr);
}

void checkEach(std::span<PageInput const> inputs, unsigned jobs, LoadOptions const& options, bool withPages,
               CheckVisitor visit) {
    ensureHostClasses();
    forEachIndex(inputs.size(), jobs, [&](std::size_t i) {
        PageInput const& input = inputs[i];
        auto error = withPageText(input, [&](std::string_view text, std::string* owned) {
            if (owned != nullptr && owned->capacity() - owned->size() > owned->size() / 4) {
                try {
                    owned->shrink_to_fit();
                } catch (std::bad_alloc const&) {  // checked as it is
                }
                text = *owned;  // the text may have moved
            }
            LoadResult page;
            CheckReport report = checkText(text, owned, input.source, options, withPages ? &page : nullptr);
            visit(i, std::move(report), page.ok() ? &page : nullptr);
        });
        if (error) {
            CheckReport report;
            report.failures.push_back(std::move(*error));
            visit(i, std::move(report), nullptr);
        }
    });
}

}  // namespace refpage
