// Enumeration-valued properties, through RefEntity's two: host objects built once
// from the stored number, assigned objects kept as they are, and the scalar rule.
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <reference/property/RefEntity.hpp>
#include <reference/property/RequireScalar.hpp>

#include <ovrin/error.hpp>
#include <ovrin/ocos.hpp>
#include <ovrin/testing.hpp>

#include <cstdint>

using namespace reference::property;
using ovrin::testing::className;
using ovrin::testing::hostCalls;
using ovrin::testing::liveArrays;
using ovrin::testing::referenceCount;

namespace {

std::string const refEntityTypeClass = "ovrin.internal.reference.property.RefEntityType";
std::string const functionTypeClass = "ovrin.internal.reference.property.FunctionType";

std::uint32_t underlyingNumber(oxArray_tag const* object) {
    return *static_cast<std::uint32_t const*>(oxGetData(omGetUnderlyingArray(object)));
}

class EnumProperty : public HostTest {};

}  // namespace

TEST_F(EnumProperty, FreshRecordBuildsObjectOfTheEnumerationClassFromItsNumber) {
    RefEntity const entity;
    std::size_t const arraysBefore = liveArrays();
    oxArray_tag const* const type = entity.getRefEntityTypeProperty();
    EXPECT_EQ(className(type), refEntityTypeClass);
    EXPECT_EQ(omGetNumberOfElementsInUnderlyingArray(type), 1u);
    EXPECT_EQ(underlyingNumber(type), RefEntityType::Unknown);
    // The object and the numbers under it: the temporary argument array is gone.
    EXPECT_EQ(liveArrays(), arraysBefore + 2);

    oxArray_tag const* const function = entity.getFunctionTypeProperty();
    EXPECT_EQ(className(function), functionTypeClass);
    EXPECT_EQ(underlyingNumber(function), FunctionType::NA);
}

TEST_F(EnumProperty, RepeatedGetsReturnTheCachedObjectWithoutHostCalls) {
    RefEntity const entity;
    oxArray_tag const* const first = entity.getFunctionTypeProperty();
    std::uint64_t const callsBefore = hostCalls();
    EXPECT_EQ(entity.getFunctionTypeProperty(), first);
    EXPECT_EQ(hostCalls(), callsBefore);
    EXPECT_EQ(referenceCount(first), 1);
}

TEST_F(EnumProperty, SetKeepsTheAssignedObjectAndStoresItsNumber) {
    RefEntity entity;
    entity.getFunctionTypeProperty();
    HostArrayPtr const assigned = testvalues::enumObject(functionTypeClass, {FunctionType::StaticMethod});
    entity.setFunctionTypeProperty(assigned.get());
    EXPECT_EQ(entity.getFunctionType(), FunctionType::StaticMethod);
    EXPECT_EQ(referenceCount(assigned.get()), 2);

    std::size_t const arraysBefore = liveArrays();
    EXPECT_EQ(entity.getFunctionTypeProperty(), assigned.get());
    EXPECT_EQ(liveArrays(), arraysBefore);
}

TEST_F(EnumProperty, NonMemberNumberIsStoredUnchecked) {
    RefEntity entity;
    HostArrayPtr const assigned = testvalues::enumObject(refEntityTypeClass, {40});
    entity.setRefEntityTypeProperty(assigned.get());
    EXPECT_EQ(static_cast<std::uint32_t>(entity.getRefEntityType()), 40u);
    EXPECT_EQ(RefEntityType::enumToString(entity.getRefEntityType()), "Unknown");
}

TEST_F(EnumProperty, NullChangesNothing) {
    RefEntity entity;
    HostArrayPtr const assigned = testvalues::enumObject(refEntityTypeClass, {RefEntityType::Class});
    entity.setRefEntityTypeProperty(assigned.get());
    entity.setRefEntityTypeProperty(nullptr);
    EXPECT_EQ(entity.getRefEntityType(), RefEntityType::Class);
    EXPECT_EQ(entity.getRefEntityTypeProperty(), assigned.get());

    RefEntity fresh;
    fresh.setFunctionTypeProperty(nullptr);
    EXPECT_EQ(fresh.getFunctionType(), FunctionType::NA);
    EXPECT_EQ(underlyingNumber(fresh.getFunctionTypeProperty()), FunctionType::NA);
}

TEST_F(EnumProperty, AnythingButOneElementThrowsRequireScalarAndChangesNothing) {
    RefEntity entity;
    HostArrayPtr const assigned = testvalues::enumObject(refEntityTypeClass, {RefEntityType::Method});
    entity.setRefEntityTypeProperty(assigned.get());

    for (auto const& numbers : {std::vector<std::uint32_t>{}, std::vector<std::uint32_t>{1, 2}}) {
        HostArrayPtr const wrong = testvalues::enumObject(refEntityTypeClass, numbers);
        EXPECT_THROW(entity.setRefEntityTypeProperty(wrong.get()), RequireScalar);
        EXPECT_EQ(entity.getRefEntityType(), RefEntityType::Method);
        EXPECT_EQ(entity.getRefEntityTypeProperty(), assigned.get());
        EXPECT_EQ(referenceCount(wrong.get()), 1);
    }
}

TEST_F(EnumProperty, HostFailureAtAnyStepPassesThroughAndLeavesTheCacheEmpty) {
    for (std::uint64_t failing = 1;; ++failing) {
        SCOPED_TRACE(failing);
        ASSERT_LT(failing, 20u) << "the getter never got through";
        RefEntity const entity;
        std::size_t const arraysBefore = liveArrays();
        {
            ovrin::testing::FaultScope const fault(failing);
            try {
                entity.getRefEntityTypeProperty();
            } catch (ovrin::HostError const&) {
                EXPECT_EQ(liveArrays(), arraysBefore);
            }
            if (ovrin::testing::faultPending()) break;  // every fallible call has been failed once
        }
        std::uint64_t const callsBefore = hostCalls();
        oxArray_tag const* const type = entity.getRefEntityTypeProperty();
        EXPECT_GT(hostCalls(), callsBefore) << "a failed get left something in the cache";
        EXPECT_EQ(underlyingNumber(type), RefEntityType::Unknown);
    }
}
