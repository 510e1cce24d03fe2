// Threads that each use their own records, while all of them share the
// enumeration key tables and the host, get exactly what one thread alone gets.
// Built under ThreadSanitizer (preset tsan), a data race fails the run.
#include "support/GlueValues.hpp"
#include "support/HostTest.hpp"
#include "support/TestPages.hpp"
#include "support/Vocabularies.hpp"

#include <ovrin/error.hpp>
#include <ovrin/ocos.hpp>

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
            refpage::LoadResult const loaded = refpage::loadInput(refpage::PageInput::file(testvalues::testPage(pageNames[which])));
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

namespace {

namespace glue = reference::glue;
using reference::property::HostArrayPtr;

/// Gives every property of host object `object` a value, through the host: the distinct
/// value of its kind, and for lists of records two records filled the same way, `depth` deep.
void fillThroughHost(ocos::COSInterface const& object, int depth) {
    for (glue::PropertyEntry const& entry : glue::tableOf(object).entries) {
        if (entry.kind != glue::PropertyKind::ObjectArray || depth == 0) {
            glue::setProperty(object, entry.word, testvalues::distinctValue(entry));
            continue;
        }
        glue::PropertyTable const& table = entry.elementTable();
        matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, 2, table.identity));
        for (std::size_t i = 0; i < 2; ++i) {
            HostArrayPtr const element = glue::constructObject(table);
            fillThroughHost(*glue::objectOf(element.get()).get(), depth - 1);
            omSetArrayElement(array.get(), i, glue::objectOf(element.get()));
        }
        glue::setProperty(object, entry.word, HostArrayPtr(array.release(), false));
    }
}

/// Reads every property of `object` through the host and sets it again with what it read;
/// the records of a list first, each through its own host object inside the array read.
void readAndSetEverything(ocos::COSInterface const& object) {
    for (glue::PropertyEntry const& entry : glue::tableOf(object).entries) {
        glue::HostValue const value = glue::getProperty(object, entry.word);
        if (entry.kind == glue::PropertyKind::ObjectArray || entry.kind == glue::PropertyKind::Record) {
            oxArray_tag const* const array = std::get<HostArrayPtr>(value).get();
            for (std::size_t i = 0; i < omGetNumberOfElementsInUnderlyingArray(array); ++i)
                readAndSetEverything(*omGetArrayElement(array, i).get());
        }
        glue::setProperty(object, entry.word, value);
    }
}

/// A host page holding `page`, after every property of it was read and set through the host.
rp::RefItem readAndSetThroughHost(rp::RefItem page) {
    glue::PropertyTable const& table = glue::tableOf<rp::RefItem>();
    HostArrayPtr const object = glue::constructObject(table);
    ocos::COSInterface const& host = *glue::objectOf(object.get()).get();
    *static_cast<rp::RefItem*>(glue::recordOf(host, table)) = std::move(page);
    readAndSetEverything(host);
    return static_cast<rp::RefItem const*>(glue::recordOf(host, table))->copy();
}

// Copies made with copy() share nothing that a host read or write touches, so threads may
// each work on their own. (Member-wise copies share cached arrays and the records inside
// them, and must not be used so.)
TEST_F(Concurrency, ThreadsReadingAndSettingEveryPropertyOfTheirOwnCopyGetWhatOneThreadGets) {
    HostArrayPtr const made = glue::constructObject(glue::tableOf<rp::RefItem>());
    ocos::COSInterface const& host = *glue::objectOf(made.get()).get();
    fillThroughHost(host, 2);
    rp::RefItem const& source = *static_cast<rp::RefItem const*>(glue::recordOf(host, glue::tableOf<rp::RefItem>()));
    ASSERT_FALSE(source.getInputGroups().empty() || source.getInputGroups().front().getInputs().empty());
    // The source's caches hold the arrays its setters built, whose records have never been read:
    // member-wise copies would share those records and fill their caches from every thread at once.

    rp::RefItem const expected = readAndSetThroughHost(source.copy());
    EXPECT_TRUE(expected == source);
    std::array<rp::RefItem, threadCount> copies;
    for (rp::RefItem& copy : copies) copy = source.copy();
    expectNoMismatchOnThreads([&](std::size_t thread) {
        std::size_t seen = 0;
        for (int round = 0; round < 3; ++round) {
            copies[thread] = readAndSetThroughHost(std::move(copies[thread]));
            if (!(copies[thread] == expected)) ++seen;
        }
        return seen;
    });
}

}  // namespace

namespace {

// Interning and class lookup take no lock: a racy publication of a name, of a grown name
// table or of a newly defined class fails here under ThreadSanitizer, and a lost or doubled
// identity fails anywhere.
TEST_F(Concurrency, ThreadsInterningAndDefiningTheSameNewNamesAgreeOnEveryIdentityAndClass) {
    constexpr std::size_t nameCount = 300;  // new names enough to grow the name table several times
    std::vector<std::string> names;
    for (std::size_t i = 0; i < nameCount; ++i) names.push_back("concurrency.Name" + std::to_string(i));
    std::array<std::vector<ocos::ClassIdentity>, threadCount> identities;
    std::array<std::vector<ocos::COSClass const*>, threadCount> classes;
    expectNoMismatchOnThreads([&](std::size_t thread) {
        std::size_t seen = 0;
        identities[thread].resize(nameCount);
        classes[thread].resize(nameCount);
        for (std::size_t k = 0; k < nameCount; ++k) {
            std::size_t const i = (k * 7 + thread * 53) % nameCount;  // each thread in its own order
            ocos::ClassIdentity const identity = ocos::internal::makeInterned(names[i]);
            identities[thread][i] = identity;
            if (ocos::internal::nameOf(identity) != names[i]) ++seen;
            // Half the threads define each class; the others look it up, defined yet or not.
            if (thread % 2 == 0) {
                classes[thread][i] = &ocos::COSClass::define({names[i], nullptr, nullptr, nullptr, true});
            } else {
                try {
                    classes[thread][i] = ocos::COSClass::getClass(identity);
                } catch (ovrin::HostError const&) {
                    classes[thread][i] = nullptr;
                }
            }
            if (classes[thread][i] != nullptr && classes[thread][i]->identity() != identity) ++seen;
        }
        return seen;
    });
    for (std::size_t i = 0; i < nameCount; ++i) {
        ocos::COSClass const* const defined = ocos::COSClass::getClass(identities[0][i]);
        for (std::size_t thread = 0; thread < threadCount; ++thread) {
            EXPECT_EQ(identities[thread][i], identities[0][i]) << names[i] << " on thread " << thread;
            if (classes[thread][i] != nullptr) {
                EXPECT_EQ(classes[thread][i], defined) << names[i] << " on thread " << thread;
            }
        }
    }
}

// Each thread counts the arrays and objects it makes and disposes of in its own shard; a
// thread that ends hands its counts on, so objects made on ended threads and released on
// this one leave the sums exact (the fixture checks the end).
TEST_F(Concurrency, ArraysAndObjectsMadeOnEndedThreadsAndReleasedOnAnotherAreCountedExactly) {
    constexpr std::size_t perThread = 50;
    std::size_t const arraysBefore = ovrin::testing::liveArrays();
    std::size_t const objectsBefore = ovrin::testing::liveObjects();
    std::array<std::vector<HostArrayPtr>, threadCount> made;
    {
        std::vector<std::jthread> threads;
        for (std::size_t t = 0; t < threadCount; ++t)
            threads.emplace_back([&made, t] {
                for (std::size_t i = 0; i < perThread; ++i)
                    made[t].push_back(glue::constructObject(glue::tableOf<rp::Example>()));
            });
    }
    EXPECT_EQ(ovrin::testing::liveArrays(), arraysBefore + threadCount * perThread);
    EXPECT_EQ(ovrin::testing::liveObjects(), objectsBefore + threadCount * perThread);
    for (auto& arrays : made) arrays.clear();
}

}  // namespace
