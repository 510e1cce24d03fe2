// Every host call made by a whole-page load, by each property setter and by
// each property getter is made to fail in turn. Each time the failure must
// surface as the host's error, leave the record in a state the library allows
// for that step, leave no host array or object behind, and let a retry succeed
// with the same result as a run without faults.
#include "support/GlueValues.hpp"
#include "support/HostErrors.hpp"
#include "support/HostTest.hpp"
#include "support/TestPages.hpp"

#include <refpage/format/Parser.hpp>

#include <ovrin/testing.hpp>

#include <gmock/gmock.h>

#include <cstdint>
#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace rp = reference::property;

namespace {

namespace glue = testvalues::glue;

/// Project pages of every shape; the first, the largest, is the target of the property sweeps.
std::vector<std::string> const sweptPages = {"largest-1", "full", "full-2", "drawn-3", "unicode"};
/// Pages that differ from the target in every field.
std::vector<std::string> const donorPages = {"full-1", "full-2", "full-3", "full-4", "full-5"};
using glue::PropertyEntry;
using reference::property::HostArrayPtr;
using testvalues::agrees;

/// What a failed action reported; empty when it succeeded.
using Outcome = std::optional<std::string>;

/// One action to sweep: how to make a fresh state, the action, and what must hold
/// after it failed and after it succeeded.
template <class State>
struct SweepCase {
    std::string what;
    std::function<State()> prepare;
    std::function<Outcome(State&)> act;
    std::function<void(State&)> checkFailed;
    std::function<void(State&)> checkSucceeded;
};

/// Counts the host calls of one clean run of the action, then repeats it once per call with
/// that call failing, on a fresh state each time; returns the number of calls failed.
template <class State>
std::uint64_t sweep(SweepCase<State> const& c) {
    std::uint64_t calls = 0;
    {
        State state = c.prepare();
        std::uint64_t const before = ovrin::testing::hostCalls();
        Outcome const outcome = c.act(state);
        calls = ovrin::testing::hostCalls() - before;
        EXPECT_FALSE(outcome) << c.what << " fails without a fault: " << outcome.value_or("");
        c.checkSucceeded(state);
    }
    EXPECT_GT(calls, 0U) << c.what << " makes no host call";
    for (std::uint64_t k = 1; k <= calls; ++k) {
        SCOPED_TRACE(c.what + ": host call " + std::to_string(k) + " of " + std::to_string(calls) + " fails");
        std::size_t const arrays = ovrin::testing::liveArrays();
        std::size_t const objects = ovrin::testing::liveObjects();
        {
            State state = c.prepare();
            std::size_t const arraysPrepared = ovrin::testing::liveArrays();
            std::size_t const objectsPrepared = ovrin::testing::liveObjects();
            Outcome outcome;
            {
                ovrin::testing::FaultScope const fault(k);
                outcome = c.act(state);
                EXPECT_FALSE(ovrin::testing::faultPending()) << "fewer host calls than the clean run made";
            }
            EXPECT_TRUE(outcome) << "the failed host call did not surface";
            EXPECT_THAT(outcome.value_or(""), ::testing::StartsWith("injected fault: "));
            EXPECT_EQ(ovrin::testing::liveArrays(), arraysPrepared) << "a failure left a host array behind";
            EXPECT_EQ(ovrin::testing::liveObjects(), objectsPrepared) << "a failure left a host object behind";
            c.checkFailed(state);
            Outcome const retry = c.act(state);
            EXPECT_FALSE(retry) << "the retry failed: " << retry.value_or("");
            c.checkSucceeded(state);
        }
        EXPECT_EQ(ovrin::testing::liveArrays(), arrays);
        EXPECT_EQ(ovrin::testing::liveObjects(), objects);
    }
    std::cout << "[  SWEEP   ] " << c.what << ": " << calls << " injection points tried\n";
    return calls;
}

/// Runs `action`, turning a host error into its message.
template <class Action>
Outcome hostOutcome(Action&& action) {
    std::string const error = testvalues::hostErrorOf(action);
    return error == testvalues::noError ? Outcome() : Outcome(error);
}

template <class R>
std::string propertyName(PropertyEntry const& entry) {
    std::string const& qualifiedName = glue::tableOf<R>().qualifiedName;
    return qualifiedName.substr(qualifiedName.rfind('.') + 1) + "." + std::string(entry.word);
}

/// A record under a sweep, and the array its property gave before the action.
template <class R>
struct Probe {
    R record;
    oxArray_tag const* array = nullptr;
};

/// Sweeps setting `entry` to `value` on copies of `target`, whose cache is filled first. A failure
/// leaves field and cache as they were, except that lists (whose field is stored before their
/// array is built) may keep the new field with the old cache.
template <class R>
std::uint64_t sweepSetter(PropertyEntry const& entry, R const& target, oxArray_tag const* value) {
    glue::ArrayAccess const access = entry.arrays();
    R expected = target.copy();
    access.set(&expected, value);
    EXPECT_FALSE(expected == target) << propertyName<R>(entry) << ": the value set must differ from the field";
    bool const mayKeepNewField = entry.kind != glue::PropertyKind::Enumeration;
    return sweep<Probe<R>>({
        "set " + propertyName<R>(entry),
        [&] {
            Probe<R> state{target.copy()};
            state.array = access.get(&state.record);
            return state;
        },
        [&](Probe<R>& state) { return hostOutcome([&] { access.set(&state.record, value); }); },
        [&](Probe<R>& state) {
            bool const unchanged = state.record == target;
            bool const newField = mayKeepNewField && state.record == expected;
            EXPECT_TRUE(unchanged || newField) << "the field is neither the old one nor an allowed new one";
            EXPECT_EQ(access.get(&state.record), state.array) << "the cache changed on a failed set";
        },
        [&](Probe<R>& state) {
            EXPECT_TRUE(state.record == expected) << "the set stored another value";
            oxArray_tag const* const cached = access.get(&state.record);
            EXPECT_NE(cached, state.array) << "the cache still holds the array of the old field";
            EXPECT_EQ(cached == value, entry.kind == glue::PropertyKind::Enumeration)
                << "only an enumeration keeps the array it was given; the others cache one built from the field";
            EXPECT_TRUE(agrees(entry, state.record, cached)) << "host and native views differ after the set";
        },
    });
}

/// Sweeps getting `entry` on copies of `source`, whose cache must be empty; a failure leaves it empty.
template <class R>
std::uint64_t sweepGetter(PropertyEntry const& entry, R const& source) {
    glue::ArrayAccess const access = entry.arrays();
    return sweep<Probe<R>>({
        "get " + propertyName<R>(entry),
        [&] { return Probe<R>{source.copy()}; },
        [&](Probe<R>& state) { return hostOutcome([&] { state.array = access.get(&state.record); }); },
        [&](Probe<R>& state) {
            EXPECT_TRUE(state.record == source) << "a failed get changed the record";
            std::uint64_t const calls = ovrin::testing::hostCalls();
            access.get(&state.record);
            EXPECT_GT(ovrin::testing::hostCalls(), calls) << "a failed get left its slot filled";
        },
        [&](Probe<R>& state) {
            EXPECT_TRUE(agrees(entry, state.record, state.array)) << "host and native views differ after the get";
            EXPECT_EQ(access.get(&state.record), state.array) << "a second get rebuilt the array";
        },
    });
}

class FaultSweep : public HostTest {
protected:
    void report() {
        std::cout << "[  SWEEP   ] total: " << tried_ << " injection points tried\n";
        RecordProperty("injection_points_tried", std::to_string(tried_));
    }
    /// The sweep reached exactly the cached properties `expected` ("Class.Word"), in that order:
    /// a table or loop that leaves one out would otherwise pass by testing nothing.
    void expectSwept(std::vector<std::string> const& expected) {
        report();
        EXPECT_EQ(swept_, expected);
    }

    /// Sweeps every cached property of class R: its setter on copies of `target` with `valueFor`'s
    /// value, and its getter on copies of `source`, whose slots must be empty.
    template <class R>
    void sweepRecord(R const& target, R const& source, std::function<HostArrayPtr(PropertyEntry const&)> valueFor) {
        for (PropertyEntry const& entry : glue::tableOf<R>().entries) {
            if (!std::holds_alternative<glue::ArrayAccess>(entry.access)) continue;
            swept_.push_back(propertyName<R>(entry));
            tried_ += sweepSetter(entry, target, valueFor(entry).get());
            tried_ += sweepGetter(entry, source);
        }
    }

    std::uint64_t tried_ = 0;         ///< host calls failed so far
    std::vector<std::string> swept_;  ///< every property sweepRecord swept, in order
};

struct LoadState {
    refpage::LoadResult result;
};

TEST_F(FaultSweep, WholePageLoadsFailCleanlyAtEveryHostCallAndLoadOnRetry) {
    for (std::string const& name : sweptPages) {
        std::string text;
        refpage::PageError error;
        ASSERT_TRUE(refpage::readTextFile(testvalues::testPage(name), text, error)) << error.describe();
        refpage::ParsedPage const parsed = refpage::parsePage(text, name);
        ASSERT_TRUE(parsed.ok()) << parsed.errors.front().describe();
        refpage::ensureHostClasses();
        rp::RefItem const reference = testvalues::loadNative(name);
        bool namedANestedValue = false;
        tried_ += sweep<LoadState>({
            "load " + name,
            [] { return LoadState{}; },
            [&](LoadState& state) -> Outcome {
                state.result = refpage::buildPage(parsed, name);
                if (state.result.ok()) return std::nullopt;
                EXPECT_EQ(state.result.errors.size(), 1U) << "one failure, one error";
                std::string const& path = state.result.errors.front().path;
                namedANestedValue = namedANestedValue || path.find("/Inputs/") != std::string::npos;
                return state.result.errors.front().message;
            },
            [](LoadState& state) { EXPECT_FALSE(state.result.page) << "a failed load yields no page"; },
            [&](LoadState& state) {
                ASSERT_TRUE(state.result.ok());
                EXPECT_TRUE(refpage::nativePage(state.result.page.get()) == reference)
                    << "the retry loaded another page";
            },
        });
        EXPECT_TRUE(namedANestedValue || name != sweptPages.front()) << "a failure inside a nested record names its path";
    }
    report();
}

// The largest page, set from pages that differ from it in every field.
TEST_F(FaultSweep, PagePropertiesLeaveAnAllowedStateAtEveryHostCall) {
    rp::RefItem const target = testvalues::loadNative(sweptPages.front());
    std::vector<rp::RefItem> donors;
    for (std::string const& name : donorPages) donors.push_back(testvalues::loadNative(name));
    sweepRecord(target, target, [&](PropertyEntry const& entry) {
        for (rp::RefItem const& donor : donors) {
            HostArrayPtr const value(testvalues::cachedArray(entry, &donor));
            if (!agrees(entry, target, value.get())) return value;
        }
        ADD_FAILURE() << entry.word << ": no donor page differs from the target";
        return HostArrayPtr();
    });
    expectSwept({"RefItem.RefEntities", "RefItem.AppThumbnail", "RefItem.DeprecationStatus", "RefItem.SyntaxGroups",
                 "RefItem.InputGroups", "RefItem.Outputs", "RefItem.ClassPropertyGroups", "RefItem.SeeAlso",
                 "RefItem.Examples", "RefItem.Parameters"});
}

// Setters on new records; getters on a group of the page, and on new records for the
// records whose copies share their caches.
TEST_F(FaultSweep, GroupAndElementPropertiesLeaveAnAllowedStateAtEveryHostCall) {
    rp::RefItem const page = testvalues::loadNative(sweptPages.front());
    ASSERT_FALSE(page.getInputGroups().empty() || page.getClassPropertyGroups().empty());
    auto const distinct = [](PropertyEntry const& entry) {
        return std::get<HostArrayPtr>(testvalues::distinctValue(entry));
    };
    sweepRecord(rp::InputGroup(), page.getInputGroups().front(), distinct);
    sweepRecord(rp::ClassPropertyGroup(), page.getClassPropertyGroups().front(), distinct);
    sweepRecord(rp::SyntaxGroup(), rp::SyntaxGroup(), distinct);
    sweepRecord(rp::Input(), rp::Input(), distinct);
    sweepRecord(rp::Output(), rp::Output(), distinct);
    sweepRecord(rp::Parameter(), rp::Parameter(), distinct);
    sweepRecord(rp::ClassProperty(), rp::ClassProperty(), distinct);
    sweepRecord(rp::RefEntity(), rp::RefEntity(), distinct);
    expectSwept({"InputGroup.Inputs", "ClassPropertyGroup.Properties", "SyntaxGroup.SyntaxType", "SyntaxGroup.Syntaxes",
                 "Input.Values", "Input.SyntaxType", "Output.Values", "Output.SyntaxType", "Parameter.Values",
                 "ClassProperty.Values", "RefEntity.RefEntityType", "RefEntity.FunctionType"});
}

}  // namespace
