// RefEntity equality and copies with their shared host caches, and the lookup summary.
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <reference/property/RecordProducer.hpp>
#include <reference/property/RefEntity.hpp>
#include <reference/property/RefItemLookup.hpp>

#include <ovrin/testing.hpp>

#include <cstdint>
#include <optional>
#include <string>

using namespace reference::property;
using ovrin::testing::referenceCount;

namespace {

class RefEntityRecord : public HostTest {
protected:
    static RefEntity makeEntity(RefEntityType::Value type, std::u16string const& name, FunctionType::Value function) {
        RefEntity entity;
        HostArrayPtr const typeObject = testvalues::enumObject(typeClass, {type});
        HostArrayPtr const functionObject = testvalues::enumObject(functionClass, {function});
        entity.setRefEntityTypeProperty(typeObject.get());
        entity.setNameProperty(&name);
        entity.setFunctionTypeProperty(functionObject.get());
        return entity;
    }

    static inline std::string const typeClass = "ovrin.internal.reference.property.RefEntityType";
    static inline std::string const functionClass = "ovrin.internal.reference.property.FunctionType";
};

}  // namespace

TEST_F(RefEntityRecord, EqualityComparesKindNameAndFunctionTypeOnly) {
    RefEntity const entity = makeEntity(RefEntityType::Function, u"sum", FunctionType::Simple);
    RefEntity fresh;
    EXPECT_EQ(entity, makeEntity(RefEntityType::Function, u"sum", FunctionType::Simple));
    EXPECT_FALSE(entity == makeEntity(RefEntityType::Method, u"sum", FunctionType::Simple));
    EXPECT_FALSE(entity == makeEntity(RefEntityType::Function, u"Sum", FunctionType::Simple));
    EXPECT_FALSE(entity == makeEntity(RefEntityType::Function, u"sum", FunctionType::Constructor));

    // Caches never take part: reading the host objects changes no comparison.
    RefEntity const other;
    EXPECT_EQ(fresh, other);
    fresh.getRefEntityTypeProperty();
    fresh.getFunctionTypeProperty();
    EXPECT_EQ(fresh, other);
    EXPECT_EQ(other, fresh);
}

TEST_F(RefEntityRecord, CopySharesTheCachedHostObjects) {
    std::optional<RefEntity> source = makeEntity(RefEntityType::Class, u"ndarray", FunctionType::Constructor);
    oxArray_tag const* const type = source->getRefEntityTypeProperty();
    oxArray_tag const* const function = source->getFunctionTypeProperty();
    long const typeReferences = referenceCount(type);
    long const functionReferences = referenceCount(function);

    RefEntity const copy = source->copy();
    EXPECT_EQ(copy, *source);
    EXPECT_EQ(referenceCount(type), typeReferences + 1);
    EXPECT_EQ(referenceCount(function), functionReferences + 1);
    EXPECT_EQ(copy.getRefEntityTypeProperty(), type);
    EXPECT_EQ(copy.getFunctionTypeProperty(), function);

    source.reset();
    EXPECT_EQ(referenceCount(type), typeReferences);
    EXPECT_EQ(*static_cast<std::uint32_t const*>(oxGetData(omGetUnderlyingArray(type))), RefEntityType::Class);
}

TEST_F(RefEntityRecord, CopyOfUncachedEntityBuildsItsOwnObjects) {
    RefEntity const source;
    RefEntity const copy = source.copy();
    EXPECT_NE(copy.getFunctionTypeProperty(), source.getFunctionTypeProperty());
}

TEST_F(RefEntityRecord, SettingTheCopyLeavesTheSourceCache) {
    RefEntity const source = makeEntity(RefEntityType::Class, u"x", FunctionType::Simple);
    oxArray_tag const* const shared = source.getFunctionTypeProperty();
    RefEntity copy = source.copy();
    HostArrayPtr const replacement = testvalues::enumObject(functionClass, {FunctionType::StaticMethod});
    copy.setFunctionTypeProperty(replacement.get());
    EXPECT_EQ(source.getFunctionTypeProperty(), shared);
    EXPECT_EQ(source.getFunctionType(), FunctionType::Simple);
    EXPECT_EQ(copy.getFunctionTypeProperty(), replacement.get());
}

TEST(RefItemLookupRecord, CopyKeepsEveryFieldExactly) {
    RefItemLookup const lookup = RecordProducer::makeRefItemLookup(
        u"numpy.sum", static_cast<RefEntityType::Value>(40), u"Sum of array elements.", true, u"numpy.sum.html",
        FunctionType::StaticMethod);
    RefItemLookup const copy = lookup.copy();
    EXPECT_EQ(copy.getName(), u"numpy.sum");
    EXPECT_EQ(static_cast<std::uint32_t>(copy.getType()), 40u);
    EXPECT_EQ(copy.getPurpose(), u"Sum of array elements.");
    EXPECT_TRUE(copy.isDeprecated());
    EXPECT_EQ(copy.getHref(), u"numpy.sum.html");
    EXPECT_EQ(copy.getFunctionType(), FunctionType::StaticMethod);
}
