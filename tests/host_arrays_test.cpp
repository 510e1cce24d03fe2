// The stand-in host's arrays: lifetime, numeric and string payloads, scope,
// queries, honest failures, fault injection and use from many threads.
#include "support/LiveCounts.hpp"

#include <ovrin/array.hpp>
#include <ovrin/error.hpp>
#include <ovrin/testing.hpp>

#include <boost/intrusive_ptr.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace {

using ovrin::HostError;
using ovrin::testing::referenceCount;
using Handle = boost::intrusive_ptr<oxArray_tag const>;

/// Runs `call` and returns the message of the host error it throws, or "no error".
template <class Call>
std::string hostErrorOf(Call&& call) {
    try {
        call();
    } catch (HostError const& e) {
        return e.what();
    }
    return "no error";
}

class HostArrays : public LiveCountTest {};

TEST_F(HostArrays, NewArrayHoldsOneReferenceAndLastReleaseDestroysIt) {
    std::size_t const before = ovrin::testing::liveArrays();
    oxArray_tag* const array = matrix::detail::do_create_uninitnumeric(1, 1, oxUINT32_CLASS, false);
    EXPECT_EQ(ovrin::testing::liveArrays(), before + 1);
    EXPECT_EQ(referenceCount(array), 1);
    intrusive_ptr_add_ref(array);
    EXPECT_EQ(referenceCount(array), 2);
    intrusive_ptr_release(array);
    EXPECT_EQ(ovrin::testing::liveArrays(), before + 1);
    intrusive_ptr_release(array);
    EXPECT_EQ(ovrin::testing::liveArrays(), before);
}

TEST_F(HostArrays, AdoptionAddsNoReferenceAndUniqueArrayDestroysOnScopeExit) {
    std::size_t const before = ovrin::testing::liveArrays();
    {
        matrix::unique_array owned = matrix::from_ovrin(oxCreateStringArray(1, 2));
        EXPECT_EQ(referenceCount(owned.get()), 1);
        EXPECT_EQ(ovrin::testing::liveArrays(), before + 1);
    }
    EXPECT_EQ(ovrin::testing::liveArrays(), before);
    matrix::destroyArray(nullptr);  // ignored
}

TEST_F(HostArrays, HandleReleasedIntoIntrusivePtrSharesOneArray) {
    Handle first(matrix::from_ovrin(oxCreateStringArray(1, 0)).release(), false);
    Handle second = first;
    EXPECT_EQ(first.get(), second.get());
    EXPECT_EQ(referenceCount(first.get()), 2);
    second.reset();
    EXPECT_EQ(referenceCount(first.get()), 1);
}

TEST_F(HostArrays, NumericArrayHasItsShapeClassAndZeroedPayload) {
    matrix::unique_array array = matrix::from_ovrin(matrix::detail::do_create_uninitnumeric(2, 3, oxDOUBLE_CLASS, false));
    EXPECT_EQ(oxGetClassID(array.get()), oxDOUBLE_CLASS);
    EXPECT_EQ(oxGetM(array.get()), 2u);
    EXPECT_EQ(oxGetN(array.get()), 3u);
    EXPECT_EQ(oxGetNumberOfElements(array.get()), 6u);
    EXPECT_FALSE(oxIsComplex(array.get()));
    EXPECT_EQ(ovrin::testing::className(array.get()), "double");
    auto const* data = static_cast<double const*>(oxGetData(array.get()));
    for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(data[i], 0.0);
}

TEST_F(HostArrays, NumericPayloadIsWritableAndKeepsItsValues) {
    matrix::unique_array array = matrix::from_ovrin(matrix::detail::do_create_uninitnumeric(1, 2, oxUINT32_CLASS, false));
    auto* data = static_cast<std::uint32_t*>(oxGetData(array.get()));
    data[0] = 7;
    data[1] = 0xFFFFFFFFu;
    auto const* again = static_cast<std::uint32_t const*>(oxGetData(array.get()));
    EXPECT_EQ(again[0], 7u);
    EXPECT_EQ(again[1], 0xFFFFFFFFu);
    EXPECT_EQ(ovrin::testing::className(array.get()), "uint32");
}

TEST_F(HostArrays, ComplexNumericArrayReportsComplex) {
    matrix::unique_array array = matrix::from_ovrin(matrix::detail::do_create_uninitnumeric(1, 1, oxINT32_CLASS, true));
    EXPECT_TRUE(oxIsComplex(array.get()));
}

TEST_F(HostArrays, NumericCreationRejectsNonNumericClass) {
    EXPECT_EQ(hostErrorOf([] { matrix::detail::do_create_uninitnumeric(1, 1, oxSTRING_CLASS, false); }),
              "do_create_uninitnumeric: expected a numeric class (double, int32 or uint32), found class id 2");
}

TEST_F(HostArrays, ScopeStartsAtZeroAndTakesTheValueSet) {
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, 1));
    EXPECT_EQ(oxGetArrayScope(array.get()), 0);
    oxSetArrayScope(array.get(), 6);
    EXPECT_EQ(oxGetArrayScope(array.get()), 6);
    EXPECT_FALSE(oxIsInternal(array.get()));
}

TEST_F(HostArrays, StringArrayStartsEmptyAndStoresEachElement) {
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, 3));
    EXPECT_EQ(oxGetClassID(array.get()), oxSTRING_CLASS);
    EXPECT_EQ(ovrin::testing::className(array.get()), "string");
    EXPECT_EQ(oxGetStringElement(array.get(), 0), u"");
    oxSetStringElement(array.get(), 2, std::u16string(u"z\0y", 3));
    EXPECT_EQ(oxGetStringElement(array.get(), 2), std::u16string(u"z\0y", 3));
}

TEST_F(HostArrays, StringElementOutOfRangeNamesIndexAndShape) {
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, 2));
    EXPECT_EQ(hostErrorOf([&] { oxGetStringElement(array.get(), 2); }),
              "oxGetStringElement: expected an index below 2, found index 2 of a 1-by-2 string array");
    EXPECT_EQ(hostErrorOf([&] { oxSetStringElement(array.get(), 5, u"x"); }),
              "oxSetStringElement: expected an index below 2, found index 5 of a 1-by-2 string array");
}

TEST_F(HostArrays, StringOperationsRejectNumericArrays) {
    matrix::unique_array array = matrix::from_ovrin(matrix::detail::do_create_uninitnumeric(1, 1, oxUINT32_CLASS, false));
    EXPECT_EQ(hostErrorOf([&] { oxGetStringElement(array.get(), 0); }),
              "oxGetStringElement: expected a string array, found a 1-by-1 uint32 array");
}

TEST_F(HostArrays, DataOfStringArrayIsAHostError) {
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(2, 1));
    EXPECT_EQ(hostErrorOf([&] { oxGetData(array.get()); }),
              "oxGetData: expected a numeric array, found a 2-by-1 string array");
}

TEST_F(HostArrays, QueriesOfNullAreHostErrors) {
    EXPECT_EQ(hostErrorOf([] { oxGetClassID(nullptr); }), "oxGetClassID: expected an array, found null");
    EXPECT_EQ(hostErrorOf([] { oxGetNumberOfElements(nullptr); }),
              "oxGetNumberOfElements: expected an array, found null");
    EXPECT_EQ(hostErrorOf([] { oxSetArrayScope(nullptr, 6); }), "oxSetArrayScope: expected an array, found null");
}

TEST_F(HostArrays, OversizedShapeIsAHostErrorNotAnOverflow) {
    std::size_t const huge = std::size_t(1) << 40;
    EXPECT_NE(hostErrorOf([&] { oxCreateStringArray(huge, huge); }), "no error");
}

TEST_F(HostArrays, ArmedFaultFiresOnceOnTheNthFallibleCall) {
    std::uint64_t const start = ovrin::testing::hostCalls();
    ovrin::testing::FaultScope fault(2);
    EXPECT_TRUE(ovrin::testing::faultPending());
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, 1));
    EXPECT_EQ(hostErrorOf([&] { oxSetStringElement(array.get(), 0, u"x"); }), "injected fault: oxSetStringElement");
    EXPECT_FALSE(ovrin::testing::faultPending());
    oxSetStringElement(array.get(), 0, u"x");  // fired once only
    EXPECT_EQ(ovrin::testing::hostCalls(), start + 3);
}

TEST_F(HostArrays, IntrospectionQueriesAndReferenceCountingAreNotFallibleCalls) {
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, 1));
    std::uint64_t const start = ovrin::testing::hostCalls();
    ovrin::testing::FaultScope fault(1);
    oxGetClassID(array.get());
    oxGetM(array.get());
    oxGetN(array.get());
    oxGetNumberOfElements(array.get());
    oxGetArrayScope(array.get());
    oxIsInternal(array.get());
    oxIsComplex(array.get());
    intrusive_ptr_add_ref(array.get());
    intrusive_ptr_release(array.get());
    EXPECT_EQ(ovrin::testing::hostCalls(), start);
    EXPECT_TRUE(ovrin::testing::faultPending());
}

TEST_F(HostArrays, FailingCreationLeaksNothing) {
    ovrin::testing::FaultScope fault(1);
    EXPECT_EQ(hostErrorOf([] { matrix::detail::do_create_uninitnumeric(1, 1, oxUINT32_CLASS, false); }),
              "injected fault: do_create_uninitnumeric");
}

TEST_F(HostArrays, FaultsArePerThread) {
    ovrin::testing::FaultScope fault(1);
    std::string otherThread;
    std::thread([&] {
        EXPECT_FALSE(ovrin::testing::faultPending());
        otherThread = hostErrorOf([] { matrix::unique_array a = matrix::from_ovrin(oxCreateStringArray(1, 1)); });
    }).join();
    EXPECT_EQ(otherThread, "no error");
    EXPECT_TRUE(ovrin::testing::faultPending());
}

TEST_F(HostArrays, ManyThreadsWithTheirOwnArraysKeepCountsExact) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t) {
        threads.emplace_back([] {
            for (int i = 0; i < 200; ++i) {
                Handle shared(oxCreateStringArray(1, 1), false);
                Handle copy = shared;
                matrix::unique_array numbers =
                    matrix::from_ovrin(matrix::detail::do_create_uninitnumeric(1, 4, oxUINT32_CLASS, false));
                static_cast<std::uint32_t*>(oxGetData(numbers.get()))[3] = static_cast<std::uint32_t>(i);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

TEST_F(HostArrays, OneArraySharedAcrossThreadsIsCountedAtomically) {
    Handle shared(oxCreateStringArray(1, 1), false);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&shared] {
            for (int i = 0; i < 1000; ++i) Handle copy = shared;
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(referenceCount(shared.get()), 1);
}

#if !defined(NDEBUG) && GTEST_HAS_DEATH_TEST
TEST(HostArraysDeathTest, DestroyingAnArrayOthersStillReferenceIsAnAssertion) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            oxArray_tag* const array = oxCreateStringArray(1, 1);
            intrusive_ptr_add_ref(array);
            matrix::destroyArray(array);
        },
        "others still reference");
}
#endif

}  // namespace
