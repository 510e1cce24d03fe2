// Object-array properties: the mechanism on its own, over a record type that
// counts its copies, then each owner's properties wired to it.
#include "../src/bridge/ObjectArray.hpp"

#include "support/GlueValues.hpp"
#include "support/HostErrors.hpp"
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"
#include "support/ObjectProperties.hpp"

#include <reference/glue/Properties.hpp>

#include <ovrin/ocos.hpp>
#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <typeinfo>
#include <vector>

namespace {

using reference::property::HostArrayPtr;
using testvalues::objectArray;
namespace bridge = reference::property::bridge;

/// A record with the shape the mechanism needs; copy() calls are counted.
struct Counted {
    std::u16string text;

    inline static int copies = 0;

    Counted copy() const {
        ++copies;
        return *this;
    }
    bool operator==(Counted const&) const = default;
    static char const* getOCOSNamespaceName() noexcept { return "ovrin.test"; }
    static char const* getOCOSClassName() noexcept { return "Counted"; }
};

/// A record of another host class, for elements of the wrong class.
struct Stranger : Counted {
    Stranger copy() const { return *this; }
    static char const* getOCOSClassName() noexcept { return "Stranger"; }
};

template <class T>
void defineTestClass() {
    ocos::COSClass::define({bridge::qualifiedClassName<T>(), &typeid(T),
                            [](void* record) noexcept { delete static_cast<T*>(record); },
                            []() -> void* { return new T; }, false});
}

std::vector<Counted> records(std::vector<std::u16string> const& texts) {
    std::vector<Counted> result;
    for (auto const& text : texts) result.push_back(Counted{text});
    return result;
}

class ObjectArrayProperty : public LiveCountTest {
protected:
    void SetUp() override {
        defineTestClass<Counted>();
        defineTestClass<Stranger>();
        LiveCountTest::SetUp();
    }
    void TearDown() override {
        cache.reset();
        oneCache.reset();
        LiveCountTest::TearDown();
    }

    void set(oxArray_tag const* value) { bridge::setObjectVector(value, cache, field); }
    oxArray_tag const* get() { return bridge::accessObjectVector(cache, field); }
    void setOne(oxArray_tag const* value) {
        bridge::setObjectAndCache<Counted>(value, oneCache, one, bridge::elementAccessor<Counted>(),
                                           bridge::recordWriter<Counted>());
    }
    oxArray_tag const* getOne() { return bridge::accessObjectCache(oneCache, one, bridge::recordWriter<Counted>()); }

    /// The vector property or the single-record property: its host pair, cache and field, how
    /// it reads a host value, and what it stores from the records {x, y, z}.
    struct Target {
        char const* what;
        std::function<void(oxArray_tag const*)> set;
        std::function<oxArray_tag const*()> get;
        HostArrayPtr& cache;
        std::function<std::vector<Counted>()> field;
        std::function<void(std::vector<Counted> const&)> reset;
        std::function<void(oxArray_tag const*)> read;
        std::vector<Counted> storedFromXyz;
    };
    std::vector<Target> targets() {
        return {{"vector", [this](auto v) { set(v); }, [this] { return get(); }, cache, [this] { return field; },
                 [this](auto r) { field = r; }, [](auto v) { bridge::readObjectArray<Counted>(v); },
                 records({u"x", u"y", u"z"})},
                {"single", [this](auto v) { setOne(v); }, [this] { return getOne(); }, oneCache,
                 [this] { return std::vector{one}; }, [this](auto r) { one = r.front(); },
                 [](auto v) { bridge::getNativeObject<Counted>(v, 0)->copy(); }, records({u"x"})}};
    }

    std::vector<Counted> field;
    HostArrayPtr cache;
    Counted one;
    HostArrayPtr oneCache;
};

TEST_F(ObjectArrayProperty, FreshGetBuildsScopedInternalOneByZeroArrayOfElementClassOnce) {
    oxArray_tag const* array = get();
    EXPECT_EQ(ovrin::testing::className(array), "ovrin.test.Counted");
    EXPECT_EQ(oxGetM(array), 1u);
    EXPECT_EQ(oxGetN(array), 0u);
    EXPECT_EQ(oxGetArrayScope(array), 6);
    EXPECT_TRUE(oxIsInternal(array));
    EXPECT_EQ(ovrin::testing::referenceCount(array), 1) << "the cache holds the only reference";
    EXPECT_EQ(get(), array);
    EXPECT_EQ(oxGetArrayScope(bridge::createObjectArray(records({u"a"}), false).get()), 4) << "unscoped";
}

TEST_F(ObjectArrayProperty, SetBuildsFreshArrayFromStoredRecords) {
    oxArray_tag const* before = get();
    HostArrayPtr const input = objectArray("ovrin.test.Counted", records({u"a", u"b", u"c"}));
    std::size_t const objectsBefore = ovrin::testing::liveObjects();
    Counted::copies = 0;
    set(input.get());

    EXPECT_EQ(Counted::copies, 6) << "three copies into the field, three heap copies for the cache";
    EXPECT_EQ(ovrin::testing::liveObjects(), objectsBefore + 3);
    EXPECT_EQ(field, records({u"a", u"b", u"c"}));
    oxArray_tag const* after = get();
    EXPECT_NE(after, input.get());
    EXPECT_NE(after, before);
    EXPECT_EQ(oxGetArrayScope(after), 6);
    EXPECT_EQ(bridge::readObjectArray<Counted>(after), field);

    bridge::getNativeObject<Counted>(input.get(), 0)->text = u"changed in the host";
    EXPECT_EQ(field, records({u"a", u"b", u"c"}));
    EXPECT_EQ(bridge::readObjectArray<Counted>(get()), field);
}

TEST_F(ObjectArrayProperty, NullSetChangesNeitherFieldNorCacheAndAnEmptyArrayStoresNothing) {
    for (Target const& target : targets()) {
        target.reset(records({u"a"}));
        oxArray_tag const* before = target.get();
        target.set(nullptr);
        EXPECT_EQ(target.field(), records({u"a"})) << target.what;
        EXPECT_EQ(target.cache.get(), before) << target.what;
    }
    HostArrayPtr const empty = objectArray("ovrin.test.Counted", records({}));
    set(empty.get());
    EXPECT_TRUE(field.empty());
    EXPECT_NE(get(), empty.get());
    EXPECT_EQ(oxGetN(get()), 0u);
}

TEST_F(ObjectArrayProperty, ElementOfAnotherClassIsAHostErrorNamingBothClassesAndChangesNothing) {
    field = records({u"kept"});
    oxArray_tag const* before = get();
    HostArrayPtr const strangers = objectArray("ovrin.test.Stranger", std::vector<Stranger>{{}});
    std::string const message = testvalues::hostErrorOf([&] { set(strangers.get()); });
    EXPECT_NE(message.find("'ovrin.test.Counted'"), std::string::npos) << message;
    EXPECT_NE(message.find("'ovrin.test.Stranger'"), std::string::npos) << message;
    EXPECT_EQ(field, records({u"kept"}));
    EXPECT_EQ(get(), before);
}

TEST_F(ObjectArrayProperty, FailureWhileReadingChangesNothingAndFailureWhileWritingKeepsNewFieldAndOldCache) {
    std::vector<Counted> const old = records({u"old"});
    std::vector<Counted> const fresh = records({u"x", u"y", u"z"});
    HostArrayPtr const input = objectArray("ovrin.test.Counted", fresh);
    for (Target const& target : targets()) {
        SCOPED_TRACE(target.what);
        std::uint64_t const start = ovrin::testing::hostCalls();
        target.read(input.get());
        std::uint64_t const readCalls = ovrin::testing::hostCalls() - start;
        target.reset(old);
        oxArray_tag const* const oldCache = target.get();
        std::size_t const arraysBefore = ovrin::testing::liveArrays();
        std::size_t const objectsBefore = ovrin::testing::liveObjects();
        std::uint64_t failing = 1;
        for (;; ++failing) {
            std::string error;
            {
                ovrin::testing::FaultScope const fault(failing);
                error = testvalues::hostErrorOf([&] { target.set(input.get()); });
            }
            if (error == testvalues::noError) break;
            EXPECT_EQ(target.cache.get(), oldCache) << "call " << failing;
            EXPECT_EQ(target.field(), failing <= readCalls ? old : target.storedFromXyz) << "call " << failing;
            EXPECT_EQ(ovrin::testing::liveArrays(), arraysBefore) << "call " << failing;
            EXPECT_EQ(ovrin::testing::liveObjects(), objectsBefore) << "call " << failing;
            target.reset(old);
        }
        EXPECT_GT(failing, readCalls + 1) << "the writer makes host calls too";
        EXPECT_EQ(target.field(), target.storedFromXyz);
        EXPECT_NE(target.cache.get(), oldCache);
    }
}

TEST_F(ObjectArrayProperty, FailureWhileBuildingInAGetLeavesTheSlotEmptyAndLeaksNothing) {
    field = records({u"a", u"b"});
    one = Counted{u"one"};
    for (Target const& target : targets()) {
        std::size_t const arraysBefore = ovrin::testing::liveArrays();
        std::size_t const objectsBefore = ovrin::testing::liveObjects();
        for (std::uint64_t failing = 1;; ++failing) {
            ovrin::testing::FaultScope const fault(failing);
            if (testvalues::hostErrorOf(target.get) == testvalues::noError) break;
            EXPECT_FALSE(target.cache) << target.what << ", call " << failing;
            EXPECT_EQ(ovrin::testing::liveArrays(), arraysBefore) << target.what << ", call " << failing;
            EXPECT_EQ(ovrin::testing::liveObjects(), objectsBefore) << target.what << ", call " << failing;
        }
        EXPECT_EQ(bridge::readObjectArray<Counted>(target.cache.get()), target.field()) << target.what;
    }
}

TEST_F(ObjectArrayProperty, SingleRecordIsAScalarNeitherScopedNorInternalAndKeepsElementZeroOfSeveral) {
    one.text = u"only";
    oxArray_tag const* scalar = getOne();
    EXPECT_EQ(ovrin::testing::className(scalar), "ovrin.test.Counted");
    EXPECT_EQ(oxGetNumberOfElements(scalar), 1u);
    EXPECT_EQ(oxGetArrayScope(scalar), 0);
    EXPECT_FALSE(oxIsInternal(scalar));
    EXPECT_EQ(bridge::getNativeObject<Counted>(scalar, 0)->text, u"only");
    EXPECT_EQ(getOne(), scalar);

    setOne(objectArray("ovrin.test.Counted", records({u"first", u"second", u"third"})).get());
    EXPECT_EQ(one.text, u"first");
    EXPECT_NE(getOne(), scalar);
    EXPECT_EQ(bridge::getNativeObject<Counted>(getOne(), 0)->text, u"first");
}

// Each owner's object-array properties reach the mechanism with their own field and element class.
template <class Tuple>
struct TypesOf;
template <class... P>
struct TypesOf<std::tuple<P...>> {
    using type = ::testing::Types<P...>;
};

template <class Property>
class OwnerProperty : public HostTest {};
TYPED_TEST_SUITE(OwnerProperty,
                 TypesOf<decltype(std::tuple_cat(testvalues::PageObjectProperties{},
                                                 testvalues::GroupObjectProperties{}))>::type);

TYPED_TEST(OwnerProperty, SetStoresCopiesOfTheRecordsAndCachesAFreshArrayOfTheElementClass) {
    using T = typename TypeParam::Element;
    typename TypeParam::Record owner;
    oxArray_tag const* const before = (owner.*TypeParam::get)();
    EXPECT_EQ(ovrin::testing::className(before), testvalues::hostClassName<T>());
    EXPECT_EQ(oxGetNumberOfElements(before), TypeParam::single ? 1u : 0u);

    std::vector<T> labelled(3);
    for (std::size_t i = 0; i < labelled.size(); ++i) {
        std::u16string const label = u"record " + std::u16string(1, char16_t(u'0' + i));
        testvalues::assign(reference::glue::tableOf<T>().entries.front(), &labelled[i], label);
    }
    HostArrayPtr const input = objectArray(labelled);
    (owner.*TypeParam::set)(input.get());
    std::vector<T> const expected = TypeParam::single ? std::vector<T>{labelled.front().copy()} : labelled;
    if constexpr (TypeParam::single)
        EXPECT_TRUE((owner.*TypeParam::native)() == expected.front());
    else
        EXPECT_TRUE((owner.*TypeParam::native)() == expected);

    oxArray_tag const* const after = (owner.*TypeParam::get)();
    EXPECT_NE(after, input.get());
    EXPECT_NE(after, before);
    EXPECT_EQ(ovrin::testing::className(after), testvalues::hostClassName<T>());
    EXPECT_TRUE(testvalues::hostRecords<T>(after) == expected);
    EXPECT_EQ((owner.*TypeParam::get)(), after);
}

}  // namespace
