// Enumeration-valued properties, through RefEntity's two: host objects built once
// from the stored number, assigned objects kept as they are, and the scalar rule
// with the library's one error as the host sees it.
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <reference/property/RefEntity.hpp>
#include <reference/property/RequireScalar.hpp>

#include <ovrin/testing.hpp>

#include <cstdint>
#include <exception>
#include <memory>
#include <string>

namespace {

using namespace reference::property;
using ovrin::testing::hostCalls;
using ovrin::testing::liveArrays;
using ovrin::testing::referenceCount;
using testvalues::enumValue;
using testvalues::hostNumber;

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

/// The error as a setter throws it, given two elements.
RequireScalar thrownBySetter() {
    RefEntity entity;
    try {
        entity.setFunctionTypeProperty(
            testvalues::enumObject(testvalues::hostClassName<FunctionType>(), {FunctionType::Simple, 0}).get());
    } catch (RequireScalar const& error) {
        return error;
    }
    throw std::logic_error("the setter did not throw RequireScalar");
}

std::string const catalogText = "Value must be a scalar: expected exactly one element.";

TEST_F(EnumProperty, RequireScalarCarriesItsKeyAndCatalogTextAndKeepsItsTypeThroughCloneAndRethrow) {
    RequireScalar const error = thrownBySetter();
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

}  // namespace
