// Threads that each use their own records, while all of them share the
// enumeration key tables and the host, get exactly what one thread alone gets.
// Built under ThreadSanitizer (preset tsan), a data race fails the run.
#include "support/HostTest.hpp"

#include <refpage/PageLoader.hpp>

#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/RefItem.hpp>
#include <reference/property/SyntaxType.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace rp = reference::property;

namespace {

constexpr std::size_t threadCount = 8;

std::vector<std::string> const& pageNames() {
    static std::vector<std::string> const names = {
        "numpy.nditer", "numpy.recarray", "numpy.busdaycalendar", "numpy.percentile",
        "numpy.add",    "numpy.msort",    "numpy.finfo",          "numpy.einsum",
    };
    return names;
}

std::filesystem::path corpusPage(std::string const& name) {
    return std::filesystem::path(REFPROP_CORPUS_DIR) / (name + ".json");
}

/// A native copy of a corpus page, loaded through the host; an empty page if it does not load.
rp::RefItem loadNative(std::string const& name) {
    refpage::LoadResult const loaded = refpage::loadPageFile(corpusPage(name));
    return loaded.ok() ? refpage::nativePage(loaded.page.get()).copy() : rp::RefItem();
}

/// Reads every cached property of `page` through the host, twice: true when each second read
/// returns the first read's array and every array has as many elements as its field.
bool hostReadsAgree(rp::RefItem const& page) {
    struct Read {
        oxArray_tag const* (rp::RefItem::*get)() const;
        std::size_t count;
    };
    std::array const reads = {
        Read{&rp::RefItem::getRefEntitiesProperty, page.getRefEntities().size()},
        Read{&rp::RefItem::getAppThumbnailProperty, 1},
        Read{&rp::RefItem::getSyntaxGroupsProperty, page.getSyntaxGroups().size()},
        Read{&rp::RefItem::getInputGroupsProperty, page.getInputGroups().size()},
        Read{&rp::RefItem::getOutputsProperty, page.getOutputs().size()},
        Read{&rp::RefItem::getClassPropertyGroupsProperty, page.getClassPropertyGroups().size()},
        Read{&rp::RefItem::getSeeAlsoProperty, page.getSeeAlsoInfo().size()},
        Read{&rp::RefItem::getExamplesProperty, page.getExamples().size()},
        Read{&rp::RefItem::getParametersProperty, page.getParameters().size()},
        Read{&rp::RefItem::getDeprecationStatusProperty, 1},
    };
    return std::all_of(reads.begin(), reads.end(), [&](Read const& read) {
        oxArray_tag const* const first = (page.*read.get)();
        return (page.*read.get)() == first && omGetNumberOfElementsInUnderlyingArray(first) == read.count;
    });
}

/// Runs `work(thread)` on `threadCount` threads at once and waits for all of them.
template <class Work>
void onThreads(Work work) {
    std::vector<std::jthread> threads;
    for (std::size_t t = 0; t < threadCount; ++t) threads.emplace_back(work, t);
}

/// Every key of the four enumerations, with a text that is no key of any.
std::vector<std::string_view> const& keys() {
    static std::vector<std::string_view> const all = {
        "current",  "announce", "warn",         "error",        "delete",       "deny",         "simple",
        "constructor", "instancemethod", "applauncher", "toollauncher", "staticmethod", "n/a",  "function",
        "class",    "method",   "property",     "properties",   "object",       "sysobj",       "package",
        "quillpadtask", "settings", "keyword",  "block",        "mdlcheck",     "mdlguideline", "reportgen",
        "corvanelanguage", "corvaneblock", "tessark", "configparam", "runtimecheck", "analysisopt", "c",
        "cpp",      "app",      "tool",         "scene",        "",             "createobject", "usage",
        "Tessark",  " function",
    };
    return all;
}

/// What the four enumerations answer for every key and for the numbers 0 to 40.
std::vector<std::string> enumerationAnswers() {
    std::vector<std::string> answers;
    for (std::string_view const key : keys()) {
        answers.push_back(std::to_string(rp::DeprecationStatus::stringToEnum(key)) + " " +
                          std::to_string(rp::FunctionType::stringToEnum(key)) + " " +
                          std::to_string(rp::RefEntityType::stringToEnum(key)) + " " +
                          std::to_string(rp::SyntaxType::stringToEnum(key)));
    }
    for (std::uint32_t n = 0; n <= 40; ++n) {
        answers.push_back(rp::DeprecationStatus::enumToString(rp::DeprecationStatus::Value(n)) + " " +
                          rp::FunctionType::enumToString(rp::FunctionType::Value(n)) + " " +
                          rp::RefEntityType::enumToString(rp::RefEntityType::Value(n)) + " " +
                          rp::SyntaxType::enumToString(rp::SyntaxType::Value(n)));
    }
    return answers;
}

class Concurrency : public HostTest {};

TEST_F(Concurrency, ThreadsLoadingTheirOwnPagesGetWhatOneThreadGets) {
    std::vector<rp::RefItem> expected;
    for (std::string const& name : pageNames()) expected.push_back(loadNative(name));
    std::array<std::size_t, threadCount> mismatches{};
    onThreads([&](std::size_t thread) {
        for (std::size_t i = 0; i < pageNames().size(); ++i) {
            std::size_t const which = (thread + i) % pageNames().size();
            refpage::LoadResult const loaded = refpage::loadPageFile(corpusPage(pageNames()[which]));
            if (!loaded.ok()) {
                ++mismatches[thread];
                continue;
            }
            rp::RefItem const& page = refpage::nativePage(loaded.page.get());
            rp::RefItem const copy = page.copy();
            if (!(page == expected[which]) || !(copy == expected[which]) || !hostReadsAgree(page) ||
                !hostReadsAgree(copy))
                ++mismatches[thread];
        }
    });
    for (std::size_t thread = 0; thread < threadCount; ++thread)
        EXPECT_EQ(mismatches[thread], 0U) << "thread " << thread;
}

TEST_F(Concurrency, KeyTablesAnswerEveryThreadAlike) {
    std::vector<std::string> const expected = enumerationAnswers();
    std::array<bool, threadCount> alike{};
    onThreads([&](std::size_t thread) {
        bool same = true;
        for (int round = 0; round < 20; ++round) same = same && enumerationAnswers() == expected;
        alike[thread] = same;
    });
    for (std::size_t thread = 0; thread < threadCount; ++thread) EXPECT_TRUE(alike[thread]) << "thread " << thread;
}

TEST_F(Concurrency, CopiesTakenFromOneUnchangingPageByManyThreadsAreIndependent) {
    // The source's own caches and those of its elements are filled before the threads start;
    // the copies then share the elements' cached arrays, counted by the host.
    rp::RefItem const source = loadNative("numpy.nditer");
    ASSERT_TRUE(hostReadsAgree(source));
    oxArray_tag const* const sourceEntities = source.getRefEntitiesProperty();
    std::array<std::size_t, threadCount> mismatches{};
    onThreads([&](std::size_t thread) {
        for (int round = 0; round < 5; ++round) {
            rp::RefItem const copy = source.copy();
            if (!(copy == source) || !hostReadsAgree(copy) || copy.getRefEntitiesProperty() == sourceEntities)
                ++mismatches[thread];
        }
    });
    for (std::size_t thread = 0; thread < threadCount; ++thread)
        EXPECT_EQ(mismatches[thread], 0U) << "thread " << thread;
}

}  // namespace
