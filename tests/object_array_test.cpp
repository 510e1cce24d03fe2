// Object-array properties: the mechanism on its own, over a record type that
// counts its copies. Each owner's properties wired to it are the fault sweep's to
// show (every set and get, with and without failures).
#include "../src/bridge/ObjectArray.hpp"

#include "support/HostErrors.hpp"
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <ovrin/ocos.hpp>
#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

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

    /// The vector property (`single` false) or the single-record property: host pair, cache, field.
    void setTo(bool single, oxArray_tag const* value) { single ? setOne(value) : set(value); }
    oxArray_tag const* getOf(bool single) { return single ? getOne() : get(); }
    HostArrayPtr& cacheOf(bool single) { return single ? oneCache : cache; }
    std::vector<Counted> fieldOf(bool single) const { return single ? std::vector{one} : field; }
    void store(bool single, std::vector<Counted> const& records) {
        single ? void(one = records.front()) : void(field = records);
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
    for (bool const single : {false, true}) {
        store(single, records({u"a"}));
        oxArray_tag const* before = getOf(single);
        setTo(single, nullptr);
        EXPECT_EQ(fieldOf(single), records({u"a"})) << single;
        EXPECT_EQ(cacheOf(single).get(), before) << single;
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
    for (bool const single : {false, true}) {
        SCOPED_TRACE(single ? "single record" : "vector");
        std::vector<Counted> const stored = single ? records({u"x"}) : fresh;
        std::uint64_t const start = ovrin::testing::hostCalls();
        single ? void(bridge::getNativeObject<Counted>(input.get(), 0)->copy())
               : void(bridge::readObjectArray<Counted>(input.get()));
        std::uint64_t const readCalls = ovrin::testing::hostCalls() - start;
        store(single, old);
        oxArray_tag const* const oldCache = getOf(single);
        std::size_t const arraysBefore = ovrin::testing::liveArrays();
        std::size_t const objectsBefore = ovrin::testing::liveObjects();
        std::uint64_t failing = 1;
        for (;; ++failing) {
            std::string error;
            {
                ovrin::testing::FaultScope const fault(failing);
                error = testvalues::hostErrorOf([&] { setTo(single, input.get()); });
            }
            if (error == testvalues::noError) break;
            EXPECT_EQ(cacheOf(single).get(), oldCache) << "call " << failing;
            EXPECT_EQ(fieldOf(single), failing <= readCalls ? old : stored) << "call " << failing;
            EXPECT_EQ(ovrin::testing::liveArrays(), arraysBefore) << "call " << failing;
            EXPECT_EQ(ovrin::testing::liveObjects(), objectsBefore) << "call " << failing;
            store(single, old);
        }
        EXPECT_GT(failing, readCalls + 1) << "the writer makes host calls too";
        EXPECT_EQ(fieldOf(single), stored);
        EXPECT_NE(cacheOf(single).get(), oldCache);
    }
}

TEST_F(ObjectArrayProperty, FailureWhileBuildingInAGetLeavesTheSlotEmptyAndLeaksNothing) {
    field = records({u"a", u"b"});
    one = Counted{u"one"};
    for (bool const single : {false, true}) {
        SCOPED_TRACE(single ? "single record" : "vector");
        std::size_t const arraysBefore = ovrin::testing::liveArrays();
        std::size_t const objectsBefore = ovrin::testing::liveObjects();
        for (std::uint64_t failing = 1;; ++failing) {
            ovrin::testing::FaultScope const fault(failing);
            if (testvalues::hostErrorOf([&] { getOf(single); }) == testvalues::noError) break;
            EXPECT_FALSE(cacheOf(single)) << "call " << failing;
            EXPECT_EQ(ovrin::testing::liveArrays(), arraysBefore) << "call " << failing;
            EXPECT_EQ(ovrin::testing::liveObjects(), objectsBefore) << "call " << failing;
        }
        EXPECT_EQ(bridge::readObjectArray<Counted>(cacheOf(single).get()), fieldOf(single));
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

}  // namespace
