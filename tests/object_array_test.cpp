// The object-array mechanism on its own, over a record type that counts its copies.
#include "../src/bridge/ObjectArray.hpp"

#include "support/HostValues.hpp"
#include "support/LiveCounts.hpp"

#include <ovrin/error.hpp>
#include <ovrin/ocos.hpp>
#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>
#include <vector>

namespace {

using reference::property::HostArrayPtr;
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
struct Stranger {
    std::u16string text;
    Stranger copy() const { return *this; }
    static char const* getOCOSNamespaceName() noexcept { return "ovrin.test"; }
    static char const* getOCOSClassName() noexcept { return "Stranger"; }
};

template <class T>
void defineTestClass() {
    ocos::ClassDefinition definition;
    definition.qualifiedName = bridge::qualifiedClassName<T>();
    definition.nativeType = &typeid(T);
    definition.dispose = [](void* record) noexcept { delete static_cast<T*>(record); };
    definition.makeDefault = []() -> void* { return new T; };
    ocos::COSClass::define(std::move(definition));
}

std::vector<Counted> records(std::vector<std::u16string> const& texts) {
    std::vector<Counted> result;
    for (auto const& text : texts) result.push_back(Counted{text});
    return result;
}

HostArrayPtr hostArray(std::vector<Counted> const& recs) {
    return testvalues::objectArray("ovrin.test.Counted", recs);
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
        thumbCache.reset();
        LiveCountTest::TearDown();
    }

    void set(oxArray_tag const* value) { bridge::setObjectVector(value, cache, field); }
    oxArray_tag const* get() { return bridge::accessObjectVector(cache, field); }
    void setOne(oxArray_tag const* value) {
        bridge::setObjectAndCache<Counted>(value, thumbCache, one, bridge::elementAccessor<Counted>(),
                                           bridge::recordWriter<Counted>());
    }
    oxArray_tag const* getOne() { return bridge::accessObjectCache(thumbCache, one, bridge::recordWriter<Counted>()); }

    std::vector<Counted> field;
    HostArrayPtr cache;
    Counted one;
    HostArrayPtr thumbCache;
};

TEST_F(ObjectArrayProperty, FreshGetBuildsScopedInternalOneByZeroArrayOfElementClass) {
    oxArray_tag const* array = get();
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(ovrin::testing::className(array), "ovrin.test.Counted");
    EXPECT_EQ(oxGetM(array), 1u);
    EXPECT_EQ(oxGetN(array), 0u);
    EXPECT_EQ(oxGetArrayScope(array), 6);
    EXPECT_TRUE(oxIsInternal(array));
    EXPECT_EQ(ovrin::testing::referenceCount(array), 1) << "the cache holds the only reference";
}

TEST_F(ObjectArrayProperty, SetBuildsFreshArrayFromStoredRecords) {
    oxArray_tag const* before = get();
    EXPECT_EQ(get(), before) << "a second get reuses the cache";
    HostArrayPtr const input = hostArray(records({u"a", u"b", u"c"}));
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
}

TEST_F(ObjectArrayProperty, NullSetChangesNeitherFieldNorCache) {
    field = records({u"a"});
    oxArray_tag const* before = get();
    set(nullptr);
    EXPECT_EQ(field, records({u"a"}));
    EXPECT_EQ(get(), before);
}

TEST_F(ObjectArrayProperty, EmptyArrayStoresEmptyVectorAndCachesANewEmptyArray) {
    field = records({u"a"});
    HostArrayPtr const input = hostArray({});
    set(input.get());
    EXPECT_TRUE(field.empty());
    EXPECT_NE(get(), input.get());
    EXPECT_EQ(oxGetN(get()), 0u);
}

TEST_F(ObjectArrayProperty, HostChangeAfterSetReachesNeitherFieldNorCache) {
    HostArrayPtr const input = hostArray(records({u"a"}));
    set(input.get());
    bridge::getNativeObject<Counted>(input.get(), 0)->text = u"changed";
    EXPECT_EQ(field, records({u"a"}));
    EXPECT_EQ(bridge::readObjectArray<Counted>(get()), records({u"a"}));
}

TEST_F(ObjectArrayProperty, ElementOfAnotherClassIsAHostErrorNamingBothClassesAndChangesNothing) {
    field = records({u"kept"});
    oxArray_tag const* before = get();
    HostArrayPtr const strangers = testvalues::objectArray("ovrin.test.Stranger", std::vector<Stranger>{{u"x"}});
    try {
        set(strangers.get());
        FAIL() << "expected a host error";
    } catch (ovrin::HostError const& error) {
        std::string const message = error.what();
        EXPECT_NE(message.find("ovrin.test.Counted"), std::string::npos) << message;
        EXPECT_NE(message.find("ovrin.test.Stranger"), std::string::npos) << message;
    }
    EXPECT_EQ(field, records({u"kept"}));
    EXPECT_EQ(get(), before);
}

TEST_F(ObjectArrayProperty, FailureWhileReadingChangesNothingAndFailureWhileWritingKeepsNewFieldAndOldCache) {
    std::vector<Counted> const old = records({u"old"});
    std::vector<Counted> const fresh = records({u"x", u"y", u"z"});
    field = old;
    oxArray_tag const* oldCache = get();
    HostArrayPtr const input = hostArray(fresh);

    std::uint64_t const start = ovrin::testing::hostCalls();
    static_cast<void>(bridge::readObjectArray<Counted>(input.get()));
    std::uint64_t const readCalls = ovrin::testing::hostCalls() - start;
    std::size_t const arraysBefore = ovrin::testing::liveArrays();
    std::size_t const objectsBefore = ovrin::testing::liveObjects();

    std::uint64_t failing = 1;
    for (;; ++failing) {
        bool threw = false;
        {
            ovrin::testing::FaultScope const fault(failing);
            try {
                set(input.get());
            } catch (ovrin::HostError const&) {
                threw = true;
            }
        }
        if (!threw) break;
        EXPECT_EQ(cache.get(), oldCache) << "call " << failing;
        EXPECT_EQ(field, failing <= readCalls ? old : fresh) << "call " << failing;
        EXPECT_EQ(ovrin::testing::liveArrays(), arraysBefore) << "call " << failing;
        EXPECT_EQ(ovrin::testing::liveObjects(), objectsBefore) << "call " << failing;
        field = old;
    }
    EXPECT_GT(failing, readCalls + 1) << "the writer makes host calls too";
    EXPECT_EQ(field, fresh);
    EXPECT_NE(cache.get(), oldCache);
}

TEST_F(ObjectArrayProperty, FailureWhileBuildingInAGetLeavesTheSlotEmptyAndLeaksNothing) {
    field = records({u"a", u"b"});
    std::size_t const arraysBefore = ovrin::testing::liveArrays();
    std::size_t const objectsBefore = ovrin::testing::liveObjects();
    for (std::uint64_t failing = 1;; ++failing) {
        ovrin::testing::FaultScope const fault(failing);
        try {
            get();
        } catch (ovrin::HostError const&) {
            EXPECT_FALSE(cache) << "call " << failing;
            EXPECT_EQ(ovrin::testing::liveArrays(), arraysBefore) << "call " << failing;
            EXPECT_EQ(ovrin::testing::liveObjects(), objectsBefore) << "call " << failing;
            continue;
        }
        break;
    }
    ASSERT_TRUE(cache);
    EXPECT_EQ(bridge::readObjectArray<Counted>(cache.get()), field);
}

TEST_F(ObjectArrayProperty, UnscopedArrayCarriesScopeFour) {
    HostArrayPtr const array = bridge::createObjectArray(records({u"a"}), false);
    EXPECT_EQ(oxGetArrayScope(array.get()), 4);
    EXPECT_TRUE(oxIsInternal(array.get()));
}

TEST_F(ObjectArrayProperty, SingleRecordGetBuildsAScalarNeitherScopedNorInternal) {
    one.text = u"only";
    oxArray_tag const* scalar = getOne();
    EXPECT_EQ(ovrin::testing::className(scalar), "ovrin.test.Counted");
    EXPECT_EQ(oxGetNumberOfElements(scalar), 1u);
    EXPECT_EQ(oxGetArrayScope(scalar), 0);
    EXPECT_FALSE(oxIsInternal(scalar));
    EXPECT_EQ(bridge::getNativeObject<Counted>(scalar, 0)->text, u"only");
    EXPECT_EQ(getOne(), scalar);
}

TEST_F(ObjectArrayProperty, SingleRecordSetKeepsElementZeroOfSeveral) {
    oxArray_tag const* before = getOne();
    HostArrayPtr const input = hostArray(records({u"first", u"second", u"third"}));
    setOne(input.get());
    EXPECT_EQ(one.text, u"first");
    EXPECT_NE(getOne(), before);
    EXPECT_EQ(bridge::getNativeObject<Counted>(getOne(), 0)->text, u"first");
    setOne(nullptr);
    EXPECT_EQ(one.text, u"first");
}

}  // namespace
