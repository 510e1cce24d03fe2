// The reference utilities: string setters, string lists crossing as 1-by-N
// host string arrays with their cache, and shared array handles.
#include "support/LiveCounts.hpp"

#include <reference/utils/Properties.hpp>

#include <ovrin/error.hpp>
#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using reference::utils::accessStringVectorCache;
using reference::utils::copyOxArrayToSharedOxArrayPtr;
using reference::utils::setStringProperty;
using reference::utils::setStringVectorAndCache;
using Handle = boost::intrusive_ptr<oxArray_tag const>;
using Texts = std::vector<std::u16string>;

/// A new `rows`-by-N host string array of `texts`.
Handle strings(Texts const& texts, std::size_t rows = 1) {
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(rows, texts.size() / rows));
    for (std::size_t i = 0; i < texts.size(); ++i) oxSetStringElement(array.get(), i, texts[i]);
    return Handle(array.release(), false);
}

Texts textsOf(oxArray_tag const* array) {
    Texts result;
    for (std::size_t i = 0; i < oxGetNumberOfElements(array); ++i) result.push_back(oxGetStringElement(array, i));
    return result;
}

class Utils : public LiveCountTest {};

TEST_F(Utils, SetStringPropertyAssignsTheValue) {
    std::u16string member = u"old";
    std::u16string const value(u"new\0tail", 8);
    setStringProperty(member, &value);
    EXPECT_EQ(member, value);
}

TEST_F(Utils, SetStringPropertyWithNullChangesNothing) {
    std::u16string member = u"kept";
    setStringProperty(member, nullptr);
    EXPECT_EQ(member, u"kept");
}

TEST_F(Utils, StringVectorSetStoresTheTextsAndCachesAFreshArray) {
    Handle const value = strings({u"a", u"b\u00e9"});
    Handle cache;
    Texts field{u"old"};
    setStringVectorAndCache(value.get(), cache, field);
    EXPECT_EQ(field, (Texts{u"a", u"b\u00e9"}));
    ASSERT_TRUE(cache);
    EXPECT_NE(cache.get(), value.get());
    EXPECT_EQ(textsOf(cache.get()), field);
    EXPECT_EQ(oxGetM(cache.get()), 1u);
    EXPECT_EQ(oxGetArrayScope(cache.get()), 6);
    EXPECT_FALSE(oxIsInternal(cache.get()));
    EXPECT_EQ(ovrin::testing::referenceCount(cache.get()), 1);
    EXPECT_EQ(accessStringVectorCache(cache, field), cache.get());
}

TEST_F(Utils, StringVectorSetReleasesTheOldCache) {
    Handle cache = strings({u"x"});
    Handle const old = cache;
    Texts field{u"x"};
    setStringVectorAndCache(strings({u"y"}).get(), cache, field);
    EXPECT_NE(cache.get(), old.get());
    EXPECT_EQ(ovrin::testing::referenceCount(old.get()), 1);
}

TEST_F(Utils, StringVectorSetWithNullChangesNothing) {
    Handle cache = strings({u"x"});
    oxArray_tag const* const before = cache.get();
    Texts field{u"x"};
    setStringVectorAndCache(nullptr, cache, field);
    EXPECT_EQ(cache.get(), before);
    EXPECT_EQ(field, Texts{u"x"});
}

TEST_F(Utils, StringVectorSetFromAnEmptyArrayStoresNoTexts) {
    Handle cache;
    Texts field{u"gone"};
    setStringVectorAndCache(strings({}).get(), cache, field);
    EXPECT_TRUE(field.empty());
    EXPECT_EQ(oxGetM(cache.get()), 1u);
    EXPECT_EQ(oxGetN(cache.get()), 0u);
}

TEST_F(Utils, StringVectorSetReadsEveryElementOfAnyShapeInOrder) {
    Handle cache;
    Texts field;
    setStringVectorAndCache(strings({u"a", u"b", u"c", u"d"}, 2).get(), cache, field);
    EXPECT_EQ(field, (Texts{u"a", u"b", u"c", u"d"}));
    EXPECT_EQ(oxGetN(cache.get()), 4u);
}

TEST_F(Utils, StringVectorSetFromANumericArrayIsAHostErrorAndChangesNothing) {
    matrix::unique_array numbers =
        matrix::from_ovrin(matrix::detail::do_create_uninitnumeric(1, 0, oxUINT32_CLASS, false));
    Handle cache;
    Texts field{u"kept"};
    try {
        setStringVectorAndCache(numbers.get(), cache, field);
        FAIL() << "no error";
    } catch (ovrin::HostError const& e) {
        EXPECT_STREQ(e.what(), "setStringVectorAndCache: expected a string array, found an array of class id 13");
    }
    EXPECT_EQ(field, Texts{u"kept"});
    EXPECT_FALSE(cache);
}

TEST_F(Utils, StringVectorReadFailureChangesNothing) {
    Handle const value = strings({u"a", u"b"});
    Handle cache = strings({u"old"});
    oxArray_tag const* const before = cache.get();
    Texts field{u"old"};
    ovrin::testing::FaultScope fault(2);  // the second element read
    EXPECT_THROW(setStringVectorAndCache(value.get(), cache, field), ovrin::HostError);
    EXPECT_EQ(field, Texts{u"old"});
    EXPECT_EQ(cache.get(), before);
}

TEST_F(Utils, StringVectorBuildFailureLeavesNewFieldAndOldCache) {
    Handle const value = strings({u"a", u"b"});
    Handle cache = strings({u"old"});
    oxArray_tag const* const before = cache.get();
    Texts field{u"old"};
    ovrin::testing::FaultScope fault(3);  // two reads, then creating the new array
    try {
        setStringVectorAndCache(value.get(), cache, field);
        FAIL() << "no error";
    } catch (ovrin::HostError const& e) {
        EXPECT_STREQ(e.what(), "injected fault: oxCreateStringArray");
    }
    EXPECT_EQ(field, (Texts{u"a", u"b"}));
    EXPECT_EQ(cache.get(), before);
}

TEST_F(Utils, EveryFaultInAStringVectorSetLeavesFieldAndCacheConsistentOrOld) {
    Handle const value = strings({u"a", u"b", u"c"});
    std::uint64_t const start = ovrin::testing::hostCalls();
    {
        Handle cache;
        Texts field;
        setStringVectorAndCache(value.get(), cache, field);
    }
    std::uint64_t const calls = ovrin::testing::hostCalls() - start;
    for (std::uint64_t n = 1; n <= calls; ++n) {
        Handle cache = strings({u"old"});
        oxArray_tag const* const before = cache.get();
        Texts field{u"old"};
        ovrin::testing::FaultScope fault(n);
        EXPECT_THROW(setStringVectorAndCache(value.get(), cache, field), ovrin::HostError) << "call " << n;
        EXPECT_EQ(cache.get(), before) << "call " << n;
        EXPECT_TRUE(field == Texts{u"old"} || field == (Texts{u"a", u"b", u"c"})) << "call " << n;
    }
}

TEST_F(Utils, AccessBuildsOneByNFromTheFieldOnceAndThenReturnsTheCache) {
    Handle cache;
    Texts const field{u"p", u"q"};
    oxArray_tag const* const first = accessStringVectorCache(cache, field);
    EXPECT_EQ(first, cache.get());
    EXPECT_EQ(textsOf(first), field);
    EXPECT_EQ(oxGetM(first), 1u);
    EXPECT_EQ(oxGetArrayScope(first), 6);
    EXPECT_EQ(accessStringVectorCache(cache, Texts{u"ignored"}), first);
}

TEST_F(Utils, AccessOfAnEmptyFieldBuildsOneByZero) {
    Handle cache;
    oxArray_tag const* const array = accessStringVectorCache(cache, {});
    EXPECT_EQ(oxGetM(array), 1u);
    EXPECT_EQ(oxGetN(array), 0u);
    EXPECT_EQ(oxGetClassID(array), oxSTRING_CLASS);
}

TEST_F(Utils, AccessFailureLeavesTheCacheEmptyAndTheNextAccessRetries) {
    Handle cache;
    Texts const field{u"p", u"q"};
    {
        ovrin::testing::FaultScope fault(3);  // create, first element, second element
        EXPECT_THROW(accessStringVectorCache(cache, field), ovrin::HostError);
    }
    EXPECT_FALSE(cache);
    EXPECT_EQ(textsOf(accessStringVectorCache(cache, field)), field);
}

TEST_F(Utils, CopyToSharedPtrSharesTheSameArray) {
    Handle const original = strings({u"a"});
    Handle const shared = copyOxArrayToSharedOxArrayPtr(original.get());
    EXPECT_EQ(shared.get(), original.get());
    EXPECT_EQ(ovrin::testing::referenceCount(original.get()), 2);
}

TEST_F(Utils, CopyOfNullIsAnEmptyHandle) { EXPECT_FALSE(copyOxArrayToSharedOxArrayPtr(nullptr)); }

}  // namespace
