// Every host call made by a whole-page load, by each property setter and by
// each property getter is made to fail in turn. Each time the failure must
// surface as the host's error, leave the record in a state the library allows
// for that step, leave no host array or object behind, and let a retry succeed
// with the same result as a run without faults.
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <refpage/PageLoader.hpp>
#include <refpage/PageParser.hpp>

#include <reference/property/RefItem.hpp>

#include <ovrin/error.hpp>
#include <ovrin/testing.hpp>

#include <gmock/gmock.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <iostream>
#include <optional>
#include <string>
#include <typeinfo>
#include <vector>

namespace rp = reference::property;

namespace {

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

/// Injection points of one sweep.
struct SweepCount {
    std::uint64_t tried = 0;
    std::uint64_t survived = 0;
};

int failedParts() { return ::testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count(); }

/// Counts the host calls of one clean run of the action, then repeats it once per call with
/// that call failing, on a fresh state each time.
template <class State>
SweepCount sweep(SweepCase<State> const& c) {
    SweepCount count;
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
        int const partsBefore = failedParts();
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
        ++count.tried;
        if (failedParts() == partsBefore) ++count.survived;
    }
    std::cout << "[  SWEEP   ] " << c.what << ": " << count.tried << " injection points tried, " << count.survived
              << " survived\n";
    return count;
}

/// Runs `action`, turning a host error into its message.
template <class Action>
Outcome hostOutcome(Action&& action) {
    try {
        action();
        return std::nullopt;
    } catch (ovrin::HostError const& e) {
        return std::string(e.what());
    }
}

std::filesystem::path corpusPage(std::string const& name) {
    return std::filesystem::path(REFPROP_CORPUS_DIR) / (name + ".json");
}

/// A native copy of a corpus page loaded through the host.
rp::RefItem loadNative(std::string const& name) {
    refpage::LoadResult const loaded = refpage::loadPageFile(corpusPage(name));
    if (!loaded.ok()) {
        ADD_FAILURE() << name << " does not load: " << loaded.errors.front().describe();
        return {};
    }
    return refpage::nativePage(loaded.page.get()).copy();
}

/// Copies of the records a host object array wraps.
template <class T>
std::vector<T> hostRecords(oxArray_tag const* array) {
    std::vector<T> records;
    for (std::size_t i = 0; i < omGetNumberOfElementsInUnderlyingArray(array); ++i)
        records.push_back(static_cast<T const*>(omGetArrayElement(array, i)->getData(typeid(T)))->copy());
    return records;
}

/// The texts of a host string array.
std::vector<std::u16string> hostTexts(oxArray_tag const* array) {
    std::vector<std::u16string> texts;
    for (std::size_t i = 0; i < oxGetNumberOfElements(array); ++i) texts.push_back(oxGetStringElement(array, i));
    return texts;
}

/// The number a host enumeration value stands on.
std::uint32_t hostNumber(oxArray_tag const* array) {
    return *static_cast<std::uint32_t const*>(oxGetData(omGetUnderlyingArray(array)));
}

template <class R>
using ArrayGetter = oxArray_tag const* (R::*)() const;
template <class R>
using ArraySetter = void (R::*)(oxArray_tag const*);
/// True when the host array a getter returned agrees with the record's native field.
template <class R>
using Agreement = std::function<bool(R const&, oxArray_tag const*)>;

template <class R, class T>
Agreement<R> recordsAgree(std::vector<T> const& (R::*native)() const) {
    return [native](R const& record, oxArray_tag const* array) { return hostRecords<T>(array) == (record.*native)(); };
}

template <class R>
Agreement<R> textsAgree(std::vector<std::u16string> const& (R::*native)() const) {
    return [native](R const& record, oxArray_tag const* array) { return hostTexts(array) == (record.*native)(); };
}

template <class R, class Value>
Agreement<R> numberAgrees(Value (R::*native)() const) {
    return [native](R const& record, oxArray_tag const* array) {
        return hostNumber(array) == static_cast<std::uint32_t>((record.*native)());
    };
}

Agreement<rp::RefItem> thumbnailAgrees() {
    return [](rp::RefItem const& page, oxArray_tag const* array) {
        std::vector<rp::AppThumbnail> const records = hostRecords<rp::AppThumbnail>(array);
        return records.size() == 1 && records.front() == page.getAppThumbnail();
    };
}

/// How a setter may leave its record when a host call fails.
enum class SetFailure {
    KeepsFieldAndCache,      ///< enumerations: the value is read and cached in one step
    MayKeepNewFieldOldCache  ///< object and text lists: the field is stored before its array is built
};

/// One property of a record of class R: its getter and setter, and how the host view agrees.
template <class R>
struct Property {
    std::string name;
    ArrayGetter<R> get;
    ArraySetter<R> set;
    Agreement<R> agrees;
    SetFailure onFailure;
};

template <class R>
struct SetterState {
    R record;
    oxArray_tag const* cachedBefore = nullptr;
};

/// Sweeps `property.set(value)` on copies of `target`, whose cache is filled first.
template <class R>
SweepCount sweepSetter(Property<R> const& property, R const& target, oxArray_tag const* value) {
    R expected = target.copy();
    (expected.*property.set)(value);
    EXPECT_FALSE(expected == target) << property.name << ": the value set must differ from the field";
    return sweep<SetterState<R>>({
        "set " + property.name,
        [&] {
            SetterState<R> state{target.copy()};
            state.cachedBefore = (state.record.*property.get)();
            return state;
        },
        [&](SetterState<R>& state) { return hostOutcome([&] { (state.record.*property.set)(value); }); },
        [&](SetterState<R>& state) {
            bool const unchanged = state.record == target;
            bool const newField = property.onFailure == SetFailure::MayKeepNewFieldOldCache && state.record == expected;
            EXPECT_TRUE(unchanged || newField) << "the field is neither the old one nor an allowed new one";
            EXPECT_EQ((state.record.*property.get)(), state.cachedBefore) << "the cache changed on a failed set";
        },
        [&](SetterState<R>& state) {
            EXPECT_TRUE(state.record == expected) << "the set stored another value";
            oxArray_tag const* const cached = (state.record.*property.get)();
            EXPECT_NE(cached, state.cachedBefore) << "the cache still holds the array of the old field";
            EXPECT_TRUE(property.agrees(state.record, cached)) << "host and native views differ after the set";
        },
    });
}

template <class R>
struct GetterState {
    R record;
    oxArray_tag const* got = nullptr;
};

/// Sweeps `property.get()` on copies of `source`, whose cache must be empty.
template <class R>
SweepCount sweepGetter(Property<R> const& property, R const& source) {
    return sweep<GetterState<R>>({
        "get " + property.name,
        [&] { return GetterState<R>{source.copy()}; },
        [&](GetterState<R>& state) { return hostOutcome([&] { state.got = (state.record.*property.get)(); }); },
        [&](GetterState<R>& state) { EXPECT_TRUE(state.record == source) << "a failed get changed the record"; },
        [&](GetterState<R>& state) {
            EXPECT_TRUE(property.agrees(state.record, state.got)) << "host and native views differ after the get";
            EXPECT_EQ((state.record.*property.get)(), state.got) << "a second get rebuilt the array";
        },
    });
}

class FaultSweep : public HostTest {
protected:
    void expectAllSurvived() {
        std::cout << "[  SWEEP   ] total: " << total_.tried << " injection points tried, " << total_.survived
                  << " survived\n";
        RecordProperty("injection_points_tried", std::to_string(total_.tried));
        RecordProperty("injection_points_survived", std::to_string(total_.survived));
        EXPECT_EQ(total_.survived, total_.tried);
    }
    void add(SweepCount const& count) {
        total_.tried += count.tried;
        total_.survived += count.survived;
    }

    /// The largest page of the corpus and pages that differ from it in every field.
    static constexpr char const* targetPage = "numpy.nditer";
    static std::vector<std::string> donorPages() {
        return {"numpy.busdaycalendar", "numpy.recarray", "numpy.percentile", "numpy.msort", "numpy.genfromtxt"};
    }

    SweepCount total_;
};

struct LoadState {
    refpage::LoadResult result;
};

TEST_F(FaultSweep, WholePageLoadsFailCleanlyAtEveryHostCallAndLoadOnRetry) {
    for (std::string const name : {"numpy.nditer", "numpy.genfromtxt", "numpy.recarray", "numpy.percentile", "numpy.add"}) {
        std::string text;
        refpage::PageError error;
        ASSERT_TRUE(refpage::readTextFile(corpusPage(name), text, error)) << error.describe();
        refpage::ParsedPage const parsed = refpage::parsePage(text, name);
        ASSERT_TRUE(parsed.ok()) << parsed.errors.front().describe();
        refpage::ensureHostClasses();
        rp::RefItem const reference = loadNative(name);
        add(sweep<LoadState>({
            "load " + name,
            [] { return LoadState{}; },
            [&](LoadState& state) -> Outcome {
                state.result = refpage::buildPage(parsed, name);
                if (state.result.ok()) return std::nullopt;
                EXPECT_EQ(state.result.errors.size(), 1U) << "one failure, one error";
                return state.result.errors.front().message;
            },
            [](LoadState& state) { EXPECT_FALSE(state.result.page) << "a failed load yields no page"; },
            [&](LoadState& state) {
                ASSERT_TRUE(state.result.ok());
                EXPECT_TRUE(refpage::nativePage(state.result.page.get()) == reference) << "the retry loaded another page";
            },
        }));
    }
    expectAllSurvived();
}

/// A cached property of the page record, and whether two pages hold the same value in its field.
struct PageProperty {
    Property<rp::RefItem> property;
    std::function<bool(rp::RefItem const&, rp::RefItem const&)> sameField;
};

template <class Field>
std::function<bool(rp::RefItem const&, rp::RefItem const&)> sameField(Field (rp::RefItem::*native)() const) {
    return [native](rp::RefItem const& a, rp::RefItem const& b) { return (a.*native)() == (b.*native)(); };
}

/// Every cached property of the page record.
std::vector<PageProperty> pageProperties() {
    using R = rp::RefItem;
    auto const keeps = SetFailure::KeepsFieldAndCache;
    auto const mayKeepNew = SetFailure::MayKeepNewFieldOldCache;
    return {
        {{"RefEntities", &R::getRefEntitiesProperty, &R::setRefEntitiesProperty, recordsAgree(&R::getRefEntities),
          mayKeepNew},
         sameField(&R::getRefEntities)},
        {{"AppThumbnail", &R::getAppThumbnailProperty, &R::setAppThumbnailProperty, thumbnailAgrees(), mayKeepNew},
         sameField(&R::getAppThumbnail)},
        {{"SyntaxGroups", &R::getSyntaxGroupsProperty, &R::setSyntaxGroupProperty, recordsAgree(&R::getSyntaxGroups),
          mayKeepNew},
         sameField(&R::getSyntaxGroups)},
        {{"InputGroups", &R::getInputGroupsProperty, &R::setInputGroupsProperty, recordsAgree(&R::getInputGroups),
          mayKeepNew},
         sameField(&R::getInputGroups)},
        {{"Outputs", &R::getOutputsProperty, &R::setOutputsProperty, recordsAgree(&R::getOutputs), mayKeepNew},
         sameField(&R::getOutputs)},
        {{"ClassPropertyGroups", &R::getClassPropertyGroupsProperty, &R::setClassPropertyGroupsProperty,
          recordsAgree(&R::getClassPropertyGroups), mayKeepNew},
         sameField(&R::getClassPropertyGroups)},
        {{"SeeAlso", &R::getSeeAlsoProperty, &R::setSeeAlsoProperty, recordsAgree(&R::getSeeAlsoInfo), mayKeepNew},
         sameField(&R::getSeeAlsoInfo)},
        {{"Examples", &R::getExamplesProperty, &R::setExamplesProperty, recordsAgree(&R::getExamples), mayKeepNew},
         sameField(&R::getExamples)},
        {{"Parameters", &R::getParametersProperty, &R::setParametersProperty, recordsAgree(&R::getParameters),
          mayKeepNew},
         sameField(&R::getParameters)},
        {{"DeprecationStatus", &R::getDeprecationStatusProperty, &R::setDeprecationStatusProperty,
          numberAgrees(&R::getDeprecationStatus), keeps},
         sameField(&R::getDeprecationStatus)},
    };
}

/// The value to set a page property to: the cached array of the first donor page whose field differs.
oxArray_tag const* donorValue(PageProperty const& page, rp::RefItem const& target,
                              std::vector<rp::RefItem> const& donors) {
    for (rp::RefItem const& donor : donors)
        if (!page.sameField(donor, target)) return (donor.*page.property.get)();
    ADD_FAILURE() << page.property.name << ": no donor page differs from the target";
    return (donors.front().*page.property.get)();
}

TEST_F(FaultSweep, PageSettersLeaveAnAllowedStateAtEveryHostCall) {
    rp::RefItem const target = loadNative(targetPage);
    std::vector<rp::RefItem> donors;
    for (std::string const& name : donorPages()) donors.push_back(loadNative(name));
    for (PageProperty const& page : pageProperties())
        add(sweepSetter(page.property, target, donorValue(page, target, donors)));
    expectAllSurvived();
}

TEST_F(FaultSweep, PageGettersLeaveTheirSlotEmptyAtEveryHostCall) {
    rp::RefItem const source = loadNative(targetPage);
    for (PageProperty const& page : pageProperties()) add(sweepGetter(page.property, source));
    expectAllSurvived();
}

std::string qualifiedName(char const* className) { return std::string("ovrin.internal.reference.property.") + className; }

TEST_F(FaultSweep, GroupAndElementPropertiesLeaveAnAllowedStateAtEveryHostCall) {
    auto const keeps = SetFailure::KeepsFieldAndCache;
    auto const mayKeepNew = SetFailure::MayKeepNewFieldOldCache;
    rp::RefItem const target = loadNative(targetPage);
    rp::RefItem const donor = loadNative("numpy.busdaycalendar");
    ASSERT_FALSE(target.getInputGroups().empty() || donor.getInputGroups().empty());
    ASSERT_FALSE(target.getClassPropertyGroups().empty() || donor.getClassPropertyGroups().empty());

    using IG = rp::InputGroup;
    Property<IG> const inputs{"InputGroup.Inputs", &IG::getInputsProperty, &IG::setInputsProperty,
                              recordsAgree(&IG::getInputs), mayKeepNew};
    add(sweepSetter(inputs, target.getInputGroups().front(), donor.getInputGroups().front().getInputsProperty()));
    add(sweepGetter(inputs, target.getInputGroups().front()));

    using CPG = rp::ClassPropertyGroup;
    Property<CPG> const properties{"ClassPropertyGroup.Properties", &CPG::getPropertiesProperty,
                                   &CPG::setPropertiesProperty, recordsAgree(&CPG::getClassProperties), mayKeepNew};
    add(sweepSetter(properties, target.getClassPropertyGroups().front(),
                    donor.getClassPropertyGroups().front().getPropertiesProperty()));
    add(sweepGetter(properties, target.getClassPropertyGroups().front()));

    // Records whose copies share their caches: getters are swept on fresh records, whose slots are empty.
    testvalues::HostArrayPtr const texts = testvalues::stringArray({u"first", u"second", u"third"});
    testvalues::HostArrayPtr const usage = testvalues::enumObject(qualifiedName("SyntaxType"), {1});
    testvalues::HostArrayPtr const method = testvalues::enumObject(qualifiedName("RefEntityType"), {2});
    testvalues::HostArrayPtr const staticMethod = testvalues::enumObject(qualifiedName("FunctionType"), {5});

    using SG = rp::SyntaxGroup;
    Property<SG> const syntaxes{"SyntaxGroup.Syntaxes", &SG::getSyntaxesProperty, &SG::setSyntaxesProperty,
                                textsAgree(&SG::getSyntaxes), mayKeepNew};
    Property<SG> const groupType{"SyntaxGroup.SyntaxType", &SG::getSyntaxTypeProperty, &SG::setSyntaxTypeProperty,
                                 numberAgrees(&SG::getSyntaxType), keeps};
    SG const syntaxGroup = target.getSyntaxGroups().front().copy();
    ASSERT_NE(syntaxGroup.getSyntaxType(), rp::SyntaxType::Usage);
    add(sweepSetter(syntaxes, syntaxGroup, texts.get()));
    add(sweepSetter(groupType, syntaxGroup, usage.get()));
    add(sweepGetter(syntaxes, SG{}));
    add(sweepGetter(groupType, SG{}));

    using In = rp::Input;
    Property<In> const values{"Input.Values", &In::getValuesProperty, &In::setValuesProperty,
                              textsAgree<In>(&In::getValues), mayKeepNew};
    Property<In> const inputType{"Input.SyntaxType", &In::getSyntaxTypeProperty, &In::setSyntaxTypeProperty,
                                 numberAgrees(&In::getSyntaxType), keeps};
    In const input = target.getInputGroups().front().getInputs().front().copy();
    ASSERT_NE(input.getSyntaxType(), rp::SyntaxType::Usage);
    add(sweepSetter(values, input, texts.get()));
    add(sweepSetter(inputType, input, usage.get()));
    add(sweepGetter(values, In{}));
    add(sweepGetter(inputType, In{}));

    using Out = rp::Output;
    Property<Out> const outputType{"Output.SyntaxType", &Out::getSyntaxTypeProperty, &Out::setSyntaxTypeProperty,
                                   numberAgrees(&Out::getSyntaxType), keeps};
    add(sweepSetter(outputType, Out{}, usage.get()));
    add(sweepGetter(outputType, Out{}));

    using E = rp::RefEntity;
    Property<E> const entityType{"RefEntity.RefEntityType", &E::getRefEntityTypeProperty,
                                 &E::setRefEntityTypeProperty, numberAgrees(&E::getRefEntityType), keeps};
    Property<E> const functionType{"RefEntity.FunctionType", &E::getFunctionTypeProperty, &E::setFunctionTypeProperty,
                                   numberAgrees(&E::getFunctionType), keeps};
    E const entity = target.getRefEntities().front().copy();
    ASSERT_NE(entity.getRefEntityType(), rp::RefEntityType::Method);
    ASSERT_NE(entity.getFunctionType(), rp::FunctionType::StaticMethod);
    add(sweepSetter(entityType, entity, method.get()));
    add(sweepSetter(functionType, entity, staticMethod.get()));
    add(sweepGetter(entityType, E{}));
    add(sweepGetter(functionType, E{}));
    expectAllSurvived();
}

}  // namespace
