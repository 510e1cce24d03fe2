// The reference utilities: string setters, string lists crossing as 1-by-N
// host string arrays with their cache, and shared array handles.
#include "support/HostErrors.hpp"
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <reference/utils/Properties.hpp>

#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using reference::utils::accessStringVectorCache;
using reference::utils::setStringVectorAndCache;
using testvalues::HostArrayPtr;
using testvalues::hostTexts;
using testvalues::stringArray;
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

}  // namespace
