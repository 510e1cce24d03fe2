// The property mechanisms, each on its own: string setters and string lists
// crossing as 1-by-N host string arrays with their cache, and shared array
// handles (the utilities); enumeration-valued properties, through RefEntity's
// two, with the scalar rule and the library's one error as the host sees it;
// object-array properties over a record type that counts its copies. Each
// owner's properties wired to them, and a get failing at each host call, are the
// fault sweep's to show.
#include "../src/bridge/ObjectArray.hpp"

#include "support/HostErrors.hpp"
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <reference/property/RefEntity.hpp>
#include <reference/property/RequireScalar.hpp>
#include <reference/utils/Properties.hpp>

#include <ovrin/ocos.hpp>
#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <typeinfo>
#include <vector>

namespace {

using namespace reference::property;
using ovrin::testing::hostCalls;
using ovrin::testing::liveArrays;
using ovrin::testing::referenceCount;
using reference::utils::accessStringVectorCache;
using reference::utils::setStringVectorAndCache;
using testvalues::enumValue;
using testvalues::hostNumber;
using testvalues::hostTexts;
using testvalues::objectArray;
using testvalues::stringArray;
namespace bridge = reference::property::bridge;
using Handle = boost::intrusive_ptr<oxArray_tag const>;
using Texts = std::vector<std::u16string>;

using Utils = LiveCountTest;

TEST_F(Utils, SetStringPropertyAssignsTheWholeValueAndNullChangesNothing) {
    std::u16string member = u"old";
    std::u16string const value(u"new\0tail", 8);
    reference::utils::setStringProperty(member, &value);
    EXPECT_EQ(member, value);
    reference::utils::setStringProperty(member, nullptr);
    EXPECT_EQ(member, value);
}

TEST_F(Utils, StringVectorSetStoresTheTextsAndCachesAFreshArrayReleasingTheOld) {
    Handle const value = stringArray({u"a", u"b\u00e9"});
    Handle cache = stringArray({u"x"});
    Handle const old = cache;
    Texts field{u"x"};
    setStringVectorAndCache(value.get(), cache, field);
    EXPECT_EQ(field, (Texts{u"a", u"b\u00e9"}));
    EXPECT_NE(cache.get(), value.get());
    EXPECT_EQ(hostTexts(cache.get()), field);
    EXPECT_EQ(oxGetM(cache.get()), 1u);
    EXPECT_EQ(oxGetArrayScope(cache.get()), 6);
    EXPECT_FALSE(oxIsInternal(cache.get()));
    EXPECT_EQ(ovrin::testing::referenceCount(cache.get()), 1);
    EXPECT_EQ(ovrin::testing::referenceCount(old.get()), 1) << "the old cached array is released";
    EXPECT_EQ(accessStringVectorCache(cache, field), cache.get());

    oxArray_tag const* const before = cache.get();
    setStringVectorAndCache(nullptr, cache, field);
    EXPECT_EQ(cache.get(), before);
    EXPECT_EQ(field, (Texts{u"a", u"b\u00e9"}));
}

TEST_F(Utils, StringVectorSetReadsEveryElementOfAnyShapeInOrder) {
    Handle cache;
    Texts field{u"gone"};
    setStringVectorAndCache(stringArray({}).get(), cache, field);
    EXPECT_TRUE(field.empty());
    EXPECT_EQ(oxGetM(cache.get()), 1u);
    EXPECT_EQ(oxGetN(cache.get()), 0u);
    matrix::unique_array twoByTwo = matrix::from_ovrin(oxCreateStringArray(2, 2));
    for (std::size_t i = 0; i < 4; ++i) oxSetStringElement(twoByTwo.get(), i, std::u16string(1, u'a' + i));
    setStringVectorAndCache(twoByTwo.get(), cache, field);
    EXPECT_EQ(field, (Texts{u"a", u"b", u"c", u"d"}));
    EXPECT_EQ(oxGetN(cache.get()), 4u);
}

TEST_F(Utils, StringVectorSetFromANumericArrayIsAHostErrorAndChangesNothing) {
    Handle cache;
    Texts field{u"kept"};
    HostArrayPtr const numbers = testvalues::numericArray({});
    EXPECT_EQ(testvalues::hostErrorOf([&] { setStringVectorAndCache(numbers.get(), cache, field); }),
              "setStringVectorAndCache: expected a string array, found an array of class id 13");
    EXPECT_EQ(field, Texts{u"kept"});
    EXPECT_FALSE(cache);
}

TEST_F(Utils, AFailureWhileReadingChangesNothingAndAFailureWhileBuildingKeepsTheNewFieldAndTheOldCache) {
    Handle const value = stringArray({u"a", u"b", u"c"});
    std::uint64_t const start = ovrin::testing::hostCalls();
    {
        Handle cache;
        Texts field;
        setStringVectorAndCache(value.get(), cache, field);
    }
    std::uint64_t const calls = ovrin::testing::hostCalls() - start;
    std::uint64_t const reads = 3;
    ASSERT_GT(calls, reads);
    for (std::uint64_t n = 1; n <= calls; ++n) {
        Handle cache = stringArray({u"old"});
        oxArray_tag const* const before = cache.get();
        Texts field{u"old"};
        ovrin::testing::FaultScope fault(n);
        EXPECT_THROW(setStringVectorAndCache(value.get(), cache, field), ovrin::HostError) << "call " << n;
        EXPECT_EQ(cache.get(), before) << "call " << n;
        EXPECT_EQ(field, n <= reads ? Texts{u"old"} : (Texts{u"a", u"b", u"c"})) << "call " << n;
    }
}

TEST_F(Utils, AccessBuildsOneByNFromTheFieldOnceAndAFailureLeavesTheCacheEmptyForARetry) {
    Handle cache;
    Texts const field{u"p", u"q"};
    {
        ovrin::testing::FaultScope fault(3);  // create, first element, second element
        EXPECT_THROW(accessStringVectorCache(cache, field), ovrin::HostError);
    }
    EXPECT_FALSE(cache);
    oxArray_tag const* const first = accessStringVectorCache(cache, field);
    EXPECT_EQ(first, cache.get());
    EXPECT_EQ(hostTexts(first), field);
    EXPECT_EQ(oxGetM(first), 1u);
    EXPECT_EQ(oxGetArrayScope(first), 6);
    EXPECT_EQ(accessStringVectorCache(cache, Texts{u"ignored"}), first);

    Handle empty;
    EXPECT_EQ(oxGetN(accessStringVectorCache(empty, {})), 0u);
    EXPECT_EQ(oxGetClassID(empty.get()), oxSTRING_CLASS);
}

TEST_F(Utils, CopyToSharedPtrSharesTheSameArrayAndNullGivesAnEmptyHandle) {
    Handle const original = stringArray({u"a"});
    Handle const shared = reference::utils::copyOxArrayToSharedOxArrayPtr(original.get());
    EXPECT_EQ(shared.get(), original.get());
    EXPECT_EQ(ovrin::testing::referenceCount(original.get()), 2);
    EXPECT_FALSE(reference::utils::copyOxArrayToSharedOxArrayPtr(nullptr));
}

using EnumProperty = HostTest;

TEST_F(EnumProperty, FreshGetBuildsAnObjectOfTheEnumerationClassOnceFromTheStoredNumber) {
    RefEntity const entity;
    std::size_t const arraysBefore = liveArrays();
    oxArray_tag const* const type = entity.getRefEntityTypeProperty();
    EXPECT_EQ(ovrin::testing::className(type), testvalues::hostClassName<RefEntityType>());
    EXPECT_EQ(omGetNumberOfElementsInUnderlyingArray(type), 1u);
    EXPECT_EQ(hostNumber(type), RefEntityType::Unknown);
    EXPECT_EQ(liveArrays(), arraysBefore + 2) << "the object and its numbers; the argument array is gone";
    EXPECT_EQ(hostNumber(entity.getFunctionTypeProperty()), FunctionType::NA);

    std::uint64_t const callsBefore = hostCalls();
    EXPECT_EQ(entity.getRefEntityTypeProperty(), type);
    EXPECT_EQ(hostCalls(), callsBefore);
    EXPECT_EQ(referenceCount(type), 1);
}

TEST_F(EnumProperty, SetStoresTheNumberUncheckedAndKeepsTheAssignedObjectAndNullChangesNothing) {
    RefEntity entity;
    entity.getFunctionTypeProperty();
    HostArrayPtr const assigned = enumValue<FunctionType>(FunctionType::StaticMethod);
    entity.setFunctionTypeProperty(assigned.get());
    EXPECT_EQ(entity.getFunctionType(), FunctionType::StaticMethod);
    EXPECT_EQ(referenceCount(assigned.get()), 2);
    std::size_t const arraysBefore = liveArrays();
    EXPECT_EQ(entity.getFunctionTypeProperty(), assigned.get());
    EXPECT_EQ(liveArrays(), arraysBefore);

    entity.setFunctionTypeProperty(nullptr);
    EXPECT_EQ(entity.getFunctionType(), FunctionType::StaticMethod);
    EXPECT_EQ(entity.getFunctionTypeProperty(), assigned.get());

    entity.setRefEntityTypeProperty(enumValue<RefEntityType>(40).get());
    EXPECT_EQ(static_cast<std::uint32_t>(entity.getRefEntityType()), 40u);
    RefEntity fresh;
    fresh.setRefEntityTypeProperty(nullptr);
    EXPECT_EQ(hostNumber(fresh.getRefEntityTypeProperty()), RefEntityType::Unknown);
}

TEST_F(EnumProperty, AnythingButOneElementThrowsRequireScalarAndChangesNothing) {
    RefEntity entity;
    HostArrayPtr const assigned = enumValue<RefEntityType>(RefEntityType::Method);
    entity.setRefEntityTypeProperty(assigned.get());
    for (auto const& numbers : {std::vector<std::uint32_t>{}, std::vector<std::uint32_t>{1, 2}}) {
        HostArrayPtr const wrong = testvalues::enumObject(testvalues::hostClassName<RefEntityType>(), numbers);
        EXPECT_THROW(entity.setRefEntityTypeProperty(wrong.get()), RequireScalar);
        EXPECT_EQ(entity.getRefEntityType(), RefEntityType::Method);
        EXPECT_EQ(entity.getRefEntityTypeProperty(), assigned.get());
        EXPECT_EQ(referenceCount(wrong.get()), 1);
    }
}

TEST_F(EnumProperty, RequireScalarCarriesItsKeyAndCatalogTextAndKeepsItsTypeThroughCloneAndRethrow) {
    std::optional<RequireScalar> thrown;
    try {
        RefEntity().setFunctionTypeProperty(
            testvalues::enumObject(testvalues::hostClassName<FunctionType>(), {FunctionType::Simple, 0}).get());
    } catch (RequireScalar const& error) {
        thrown.emplace(error);
    }
    ASSERT_TRUE(thrown) << "the setter did not throw RequireScalar";
    RequireScalar const& error = *thrown;
    std::string const catalogText = "Value must be a scalar: expected exactly one element.";
    EXPECT_EQ(error.GetBaseMsgIDObj().catalog, "Ovrin:class");
    EXPECT_EQ(error.GetBaseMsgIDObj().key, "RequireScalar");
    EXPECT_TRUE(error.GetBaseMsgIDObj().arguments.empty());
    EXPECT_EQ(error.GetID(), "Ovrin:class:RequireScalar");
    char const* const first = error.what();
    EXPECT_EQ(error.what(), first) << "the text is kept by the exception, not made again per call";
    EXPECT_STREQ(first, catalogText.c_str()) << "the first text is still there after the second call";
    EXPECT_EQ(static_cast<std::exception const&>(error).what(), catalogText);
    EXPECT_EQ(error.GetUnicodeMessageTxt(), std::u16string(catalogText.begin(), catalogText.end()));

    using namespace foundation::core::except;
    std::unique_ptr<IException> const clone(error.clone());
    ASSERT_NE(dynamic_cast<RequireScalar const*>(clone.get()), nullptr);
    EXPECT_THROW(clone->rethrow(), RequireScalar);
    EXPECT_THROW(error.rethrow(), IMsgIDException);
    EXPECT_THROW(error.rethrow(), IException);
    EXPECT_THROW(error.rethrow(), std::exception);
}

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
    std::uint64_t const calls = hostCalls();
    EXPECT_EQ(get(), array);
    EXPECT_EQ(hostCalls(), calls) << "a filled cache is returned as it is";
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
