// Threads that each use their own records, while all of them share the
// enumeration key tables and the host, get exactly what one thread alone gets.
// Built under ThreadSanitizer (preset tsan), a data race fails the run.
#include "support/GlueValues.hpp"
#include "support/HostTest.hpp"
#include "support/TestPages.hpp"
#include "support/Vocabularies.hpp"

#include <array>
#include <cstdint>
#include <string>
#include <thread>
#include <variant>
#include <vector>

namespace rp = reference::property;

namespace {

constexpr std::size_t threadCount = 8;

/// Project pages of every shape, the largest first.
std::vector<std::string> const pageNames = {"largest-1", "full",    "unicode", "full-2",
                                            "drawn-1",   "drawn-2", "drawn-3", "drawn-4"};

/// Reads every cached property of `page` through the host, twice: true when each second read
/// returns the first read's array and every array stands for its field.
bool hostReadsAgree(rp::RefItem const& page) {
    for (auto const& entry : testvalues::glue::tableOf<rp::RefItem>().entries) {
        if (!std::holds_alternative<testvalues::glue::ArrayAccess>(entry.access)) continue;
        oxArray_tag const* const first = entry.arrays().get(&page);
        if (entry.arrays().get(&page) != first || !testvalues::agrees(entry, page, first)) return false;
    }
    return true;
}

/// Runs `work(thread)` on `threadCount` threads at once; each must see no mismatch.
template <class Work>
void expectNoMismatchOnThreads(Work work) {
    std::array<std::size_t, threadCount> mismatches{};
    {
        std::vector<std::jthread> threads;
        for (std::size_t t = 0; t < threadCount; ++t) threads.emplace_back([&, t] { mismatches[t] = work(t); });
    }
    for (std::size_t thread = 0; thread < threadCount; ++thread)
        EXPECT_EQ(mismatches[thread], 0U) << "thread " << thread;
}

/// What the four enumerations answer for every key of any of them and for the numbers 0 to 40.
std::vector<std::string> enumerationAnswers() {
    std::vector<std::string> answers;
    testvalues::forEachVocabulary([&](auto vocabulary) {
        using Enum = typename decltype(vocabulary)::type;
        for (std::uint32_t n = 0; n <= 40; ++n) answers.push_back(Enum::enumToString(typename Enum::Value(n)));
        testvalues::forEachVocabulary([&](auto keys) {
            for (testvalues::Member const& member : testvalues::Vocabulary<typename decltype(keys)::type>::members) {
                answers.push_back(std::to_string(Enum::stringToEnum(member.key)));
                answers.push_back(std::to_string(Enum::stringToEnum(member.display)));
            }
        });
    });
    return answers;
}

using Concurrency = HostTest;

TEST_F(Concurrency, ThreadsLoadingTheirOwnPagesGetWhatOneThreadGets) {
    std::vector<rp::RefItem> expected;
    for (std::string const& name : pageNames) expected.push_back(testvalues::loadNative(name));
    expectNoMismatchOnThreads([&](std::size_t thread) {
        std::size_t seen = 0;
        for (std::size_t i = 0; i < pageNames.size(); ++i) {
            std::size_t const which = (thread + i) % pageNames.size();
            refpage::LoadResult const loaded = refpage::loadPageFile(testvalues::testPage(pageNames[which]));
            if (!loaded.ok()) {
                ++seen;
                continue;
            }
            rp::RefItem const& page = refpage::nativePage(loaded.page.get());
            rp::RefItem const copy = page.copy();
            if (!(page == expected[which]) || !(copy == expected[which]) || !hostReadsAgree(page) ||
                !hostReadsAgree(copy))
                ++seen;
        }
        return seen;
    });
}

TEST_F(Concurrency, KeyTablesAnswerEveryThreadAlike) {
    std::vector<std::string> const expected = enumerationAnswers();
    expectNoMismatchOnThreads([&](std::size_t) {
        std::size_t seen = 0;
        for (int round = 0; round < 20; ++round) seen += enumerationAnswers() == expected ? 0 : 1;
        return seen;
    });
}

TEST_F(Concurrency, CopiesTakenFromOneUnchangingPageByManyThreadsAreIndependent) {
    // The source's own caches and those of its elements are filled before the threads start;
    // the copies then share the elements' cached arrays, counted by the host.
    rp::RefItem const source = testvalues::loadNative(pageNames.front());
    ASSERT_TRUE(hostReadsAgree(source));
    oxArray_tag const* const sourceEntities = source.getRefEntitiesProperty();
    expectNoMismatchOnThreads([&](std::size_t) {
        std::size_t seen = 0;
        for (int round = 0; round < 5; ++round) {
            rp::RefItem const copy = source.copy();
            if (!(copy == source) || !hostReadsAgree(copy) || copy.getRefEntitiesProperty() == sourceEntities) ++seen;
        }
        return seen;
    });
}

}  // namespace
