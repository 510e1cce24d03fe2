// The page record: its nine object-array properties, the thumbnail, equality and copies.
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <reference/property/RefItem.hpp>

#include <ovrin/error.hpp>
#include <ovrin/ocos.hpp>
#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <typeinfo>
#include <vector>

namespace {

using namespace reference::property;

template <class T>
std::string hostClassOf() {
    return std::string(T::getOCOSNamespaceName()) + "." + T::getOCOSClassName();
}

/// A record told apart from others by `label` (its name, or its title when it has no name).
template <class T>
T labelled(std::u16string const& label) {
    T record;
    if constexpr (requires { record.setNameProperty(&label); })
        record.setNameProperty(&label);
    else
        record.setTitleProperty(&label);
    return record;
}

template <class T>
std::vector<T> labelledRecords(std::vector<std::u16string> const& labels) {
    std::vector<T> records;
    for (auto const& label : labels) records.push_back(labelled<T>(label));
    return records;
}

template <class T>
HostArrayPtr hostArrayOf(std::vector<T> const& records) {
    return testvalues::objectArray(hostClassOf<T>(), records);
}

template <class T>
std::vector<T> recordsOf(oxArray_tag const* array) {
    std::vector<T> records;
    for (std::size_t i = 0; i < oxGetNumberOfElements(array); ++i)
        records.push_back(static_cast<T*>(omGetArrayElement(array, i)->getData(typeid(T)))->copy());
    return records;
}

/// One vector property of the page: its element type, host pair and native getter.
template <class T, oxArray_tag const* (RefItem::*Get)() const, void (RefItem::*Set)(oxArray_tag const*),
          std::vector<T> const& (RefItem::*Native)() const>
struct VectorProperty {
    using Record = T;
    static oxArray_tag const* get(RefItem const& page) { return (page.*Get)(); }
    static void set(RefItem& page, oxArray_tag const* value) { (page.*Set)(value); }
    static std::vector<T> const& native(RefItem const& page) { return (page.*Native)(); }
};

using VectorProperties = ::testing::Types<
    VectorProperty<RefEntity, &RefItem::getRefEntitiesProperty, &RefItem::setRefEntitiesProperty,
                   &RefItem::getRefEntities>,
    VectorProperty<SyntaxGroup, &RefItem::getSyntaxGroupsProperty, &RefItem::setSyntaxGroupProperty,
                   &RefItem::getSyntaxGroups>,
    VectorProperty<InputGroup, &RefItem::getInputGroupsProperty, &RefItem::setInputGroupsProperty,
                   &RefItem::getInputGroups>,
    VectorProperty<Output, &RefItem::getOutputsProperty, &RefItem::setOutputsProperty, &RefItem::getOutputs>,
    VectorProperty<ClassPropertyGroup, &RefItem::getClassPropertyGroupsProperty,
                   &RefItem::setClassPropertyGroupsProperty, &RefItem::getClassPropertyGroups>,
    VectorProperty<SeeAlso, &RefItem::getSeeAlsoProperty, &RefItem::setSeeAlsoProperty, &RefItem::getSeeAlsoInfo>,
    VectorProperty<Example, &RefItem::getExamplesProperty, &RefItem::setExamplesProperty, &RefItem::getExamples>,
    VectorProperty<Parameter, &RefItem::getParametersProperty, &RefItem::setParametersProperty,
                   &RefItem::getParameters>>;

template <class Property>
class RefItemVectorProperty : public HostTest {};
TYPED_TEST_SUITE(RefItemVectorProperty, VectorProperties);

TYPED_TEST(RefItemVectorProperty, FreshGetIsAnEmptyScopedArrayOfTheElementClass) {
    using T = typename TypeParam::Record;
    RefItem const page;
    oxArray_tag const* array = TypeParam::get(page);
    EXPECT_EQ(ovrin::testing::className(array), hostClassOf<T>());
    EXPECT_EQ(oxGetM(array), 1u);
    EXPECT_EQ(oxGetN(array), 0u);
    EXPECT_EQ(oxGetArrayScope(array), 6);
    EXPECT_TRUE(oxIsInternal(array));
    EXPECT_EQ(TypeParam::get(page), array);
}

TYPED_TEST(RefItemVectorProperty, SetThenGetBuildsAFreshArrayOfEqualRecordsInOrder) {
    using T = typename TypeParam::Record;
    RefItem page;
    oxArray_tag const* before = TypeParam::get(page);
    auto const records = labelledRecords<T>({u"one", u"two", u"three"});
    HostArrayPtr const input = hostArrayOf(records);
    TypeParam::set(page, input.get());

    EXPECT_EQ(TypeParam::native(page), records);
    oxArray_tag const* after = TypeParam::get(page);
    EXPECT_NE(after, input.get());
    EXPECT_NE(after, before);
    EXPECT_EQ(oxGetArrayScope(after), 6);
    EXPECT_EQ(recordsOf<T>(after), records);
    EXPECT_EQ(TypeParam::get(page), after);
}

TYPED_TEST(RefItemVectorProperty, OrderOfElementsMattersToEquality) {
    using T = typename TypeParam::Record;
    RefItem ab, ba;
    TypeParam::set(ab, hostArrayOf(labelledRecords<T>({u"a", u"b"})).get());
    TypeParam::set(ba, hostArrayOf(labelledRecords<T>({u"b", u"a"})).get());
    EXPECT_FALSE(ab == ba);
    EXPECT_FALSE(ab == RefItem());
}

TYPED_TEST(RefItemVectorProperty, CopyComparesEqualAndBuildsItsOwnArrayOnFirstGet) {
    using T = typename TypeParam::Record;
    RefItem page;
    TypeParam::set(page, hostArrayOf(labelledRecords<T>({u"a", u"b"})).get());
    oxArray_tag const* source = TypeParam::get(page);
    RefItem const copy = page.copy();
    EXPECT_TRUE(copy == page);
    oxArray_tag const* copied = TypeParam::get(copy);
    EXPECT_NE(copied, source);
    EXPECT_EQ(recordsOf<T>(copied), TypeParam::native(page));
}

AppThumbnail thumbnail(std::u16string const& fileRef, std::u16string const& alt) {
    AppThumbnail record;
    record.setFileRefProperty(&fileRef);
    record.setAltProperty(&alt);
    return record;
}

constexpr char thumbnailClass[] = "ovrin.internal.reference.property.AppThumbnail";

using RefItemPage = HostTest;

TEST_F(RefItemPage, UnsetThumbnailIsEmptyAndReadsAsAScalarObject) {
    RefItem const page;
    EXPECT_TRUE(page.getAppThumbnail() == AppThumbnail());
    oxArray_tag const* scalar = page.getAppThumbnailProperty();
    EXPECT_EQ(ovrin::testing::className(scalar), thumbnailClass);
    EXPECT_EQ(oxGetNumberOfElements(scalar), 1u);
    EXPECT_EQ(oxGetArrayScope(scalar), 0);
    EXPECT_FALSE(oxIsInternal(scalar));
    EXPECT_EQ(page.getAppThumbnailProperty(), scalar);
}

TEST_F(RefItemPage, ThumbnailSetKeepsElementZeroAndCachesAFreshScalar) {
    RefItem page;
    HostArrayPtr const several = testvalues::objectArray(
        thumbnailClass, std::vector<AppThumbnail>{thumbnail(u"a.png", u"A"), thumbnail(u"b.png", u"B")});
    page.setAppThumbnailProperty(several.get());
    EXPECT_TRUE(page.getAppThumbnail() == thumbnail(u"a.png", u"A"));
    oxArray_tag const* scalar = page.getAppThumbnailProperty();
    EXPECT_NE(scalar, several.get());
    EXPECT_EQ(oxGetNumberOfElements(scalar), 1u);
    EXPECT_TRUE(recordsOf<AppThumbnail>(scalar).front() == thumbnail(u"a.png", u"A"));

    page.setAppThumbnailProperty(nullptr);
    EXPECT_EQ(page.getAppThumbnailProperty(), scalar);
}

TEST_F(RefItemPage, ThumbnailFailuresFollowTheStoreThenCacheOrder) {
    RefItem page;
    oxArray_tag const* oldCache = page.getAppThumbnailProperty();
    HostArrayPtr const input =
        testvalues::objectArray(thumbnailClass, std::vector<AppThumbnail>{thumbnail(u"new.png", u"N")});
    bool sawOld = false, sawNew = false;
    for (std::uint64_t failing = 1;; ++failing) {
        RefItem attempt = page;  // shares the old cached scalar
        bool threw = false;
        {
            ovrin::testing::FaultScope const fault(failing);
            try {
                attempt.setAppThumbnailProperty(input.get());
            } catch (ovrin::HostError const&) {
                threw = true;
            }
        }
        if (!threw) break;
        EXPECT_EQ(attempt.getAppThumbnailProperty(), oldCache) << "call " << failing;
        bool const stored = attempt.getAppThumbnail() == thumbnail(u"new.png", u"N");
        EXPECT_TRUE(stored || attempt.getAppThumbnail() == AppThumbnail()) << "call " << failing;
        EXPECT_FALSE(sawNew && !stored) << "a read failure after a writer failure, call " << failing;
        (stored ? sawNew : sawOld) = true;
    }
    EXPECT_TRUE(sawOld);
    EXPECT_TRUE(sawNew);
}

RefItem withStrings(std::u16string const& text, void (RefItem::*setter)(std::u16string const*)) {
    RefItem page;
    (page.*setter)(&text);
    return page;
}

TEST_F(RefItemPage, EveryScalarFieldTakesPartInEquality) {
    for (auto setter : {&RefItem::setHrefProperty, &RefItem::setPackageNameProperty, &RefItem::setPurposeProperty,
                        &RefItem::setIntroducedInProperty, &RefItem::setDescriptionProperty}) {
        EXPECT_FALSE(withStrings(u"x", setter) == RefItem());
        EXPECT_TRUE(withStrings(u"x", setter) == withStrings(u"x", setter));
    }
    RefItem warned;
    warned.setDeprecationStatusProperty(
        testvalues::enumObject("ovrin.internal.reference.property.DeprecationStatus", {DeprecationStatus::Warn})
            .get());
    EXPECT_EQ(warned.getDeprecationStatus(), DeprecationStatus::Warn);
    EXPECT_FALSE(warned == RefItem());

    RefItem pictured;
    pictured.setAppThumbnailProperty(
        testvalues::objectArray(thumbnailClass, std::vector<AppThumbnail>{thumbnail(u"", u"alt")}).get());
    EXPECT_FALSE(pictured == RefItem());
}

/// Every host array getter of the page, the deprecation status included.
std::vector<std::function<oxArray_tag const*(RefItem const&)>> allArrayGetters() {
    return {&RefItem::getRefEntitiesProperty,  &RefItem::getAppThumbnailProperty,
            &RefItem::getDeprecationStatusProperty, &RefItem::getSyntaxGroupsProperty,
            &RefItem::getInputGroupsProperty,  &RefItem::getOutputsProperty,
            &RefItem::getClassPropertyGroupsProperty, &RefItem::getSeeAlsoProperty,
            &RefItem::getExamplesProperty,     &RefItem::getParametersProperty};
}

TEST_F(RefItemPage, CopyStartsWithAllTenSlotsEmptyWhileTheImplicitCopySharesThem) {
    RefItem page;
    std::vector<oxArray_tag const*> built;
    for (auto const& get : allArrayGetters()) built.push_back(get(page));

    RefItem const copy = page.copy();
    RefItem const memberwise = page;
    auto const getters = allArrayGetters();
    for (std::size_t i = 0; i < getters.size(); ++i) {
        EXPECT_NE(getters[i](copy), built[i]) << "slot " << i;
        EXPECT_EQ(getters[i](memberwise), built[i]) << "slot " << i;
    }
    EXPECT_TRUE(copy == page);
}

/// A page with something in every field, filled through the host properties only.
RefItem samplePage() {
    auto text = [](char16_t const* s) { return std::u16string(s); };
    RefItem page;
    std::u16string const href = text(u"reference/generated/numpy.sum.html"), package = text(u"numpy"),
                         purpose = text(u"Sum of array elements."), introduced = text(u"1.0"),
                         description = text(u"Sums over the given axis.");
    page.setHrefProperty(&href);
    page.setPackageNameProperty(&package);
    page.setPurposeProperty(&purpose);
    page.setIntroducedInProperty(&introduced);
    page.setDescriptionProperty(&description);
    page.setDeprecationStatusProperty(
        testvalues::enumObject("ovrin.internal.reference.property.DeprecationStatus", {DeprecationStatus::Announce})
            .get());
    page.setAppThumbnailProperty(
        testvalues::objectArray(thumbnailClass, std::vector<AppThumbnail>{thumbnail(u"sum.png", u"sum")}).get());

    RefEntity entity = labelled<RefEntity>(u"numpy.sum");
    entity.setRefEntityTypeProperty(
        testvalues::enumObject("ovrin.internal.reference.property.RefEntityType", {RefEntityType::Function}).get());
    page.setRefEntitiesProperty(hostArrayOf(std::vector<RefEntity>{entity}).get());

    SyntaxGroup syntax = labelled<SyntaxGroup>(u"Syntax");
    syntax.setSyntaxesProperty(testvalues::stringArray({u"sum(a)", u"sum(a, axis=None)"}).get());
    page.setSyntaxGroupProperty(hostArrayOf(std::vector<SyntaxGroup>{syntax}).get());

    Input axis = labelled<Input>(u"axis");
    axis.setValuesProperty(testvalues::stringArray({u"None", u"int"}).get());
    axis.setIsNameValuePairProperty(true);
    InputGroup inputs = labelled<InputGroup>(u"Input Arguments");
    inputs.setInputsProperty(hostArrayOf(std::vector<Input>{labelled<Input>(u"a"), axis}).get());
    page.setInputGroupsProperty(hostArrayOf(std::vector<InputGroup>{inputs}).get());

    page.setOutputsProperty(hostArrayOf(labelledRecords<Output>({u"sum_along_axis"})).get());

    ClassPropertyGroup properties = labelled<ClassPropertyGroup>(u"Properties");
    properties.setPropertiesProperty(hostArrayOf(labelledRecords<ClassProperty>({u"dtype"})).get());
    page.setClassPropertyGroupsProperty(hostArrayOf(std::vector<ClassPropertyGroup>{properties}).get());

    page.setSeeAlsoProperty(hostArrayOf(labelledRecords<SeeAlso>({u"ndarray.sum", u"cumsum"})).get());
    page.setExamplesProperty(hostArrayOf(labelledRecords<Example>({u"Basic use"})).get());
    page.setParametersProperty(hostArrayOf(labelledRecords<Parameter>({u"keepdims"})).get());
    return page;
}

TEST_F(RefItemPage, WholePageBuiltThroughTheHostReadsBackNativelyAndCopiesEqual) {
    RefItem const page = samplePage();
    EXPECT_EQ(page.getHref(), u"reference/generated/numpy.sum.html");
    EXPECT_EQ(page.getDeprecationStatus(), DeprecationStatus::Announce);
    EXPECT_EQ(page.getAppThumbnail().getFileRef(), u"sum.png");
    ASSERT_EQ(page.getRefEntities().size(), 1u);
    EXPECT_EQ(page.getRefEntities()[0].getRefEntityType(), RefEntityType::Function);
    ASSERT_EQ(page.getSyntaxGroups().size(), 1u);
    EXPECT_EQ(page.getSyntaxGroups()[0].getSyntaxes().size(), 2u);
    ASSERT_EQ(page.getInputGroups().size(), 1u);
    ASSERT_EQ(page.getInputGroups()[0].getInputs().size(), 2u);
    EXPECT_TRUE(page.getInputGroups()[0].getInputs()[1].isNameValuePair());
    EXPECT_EQ(page.getInputGroups()[0].getInputs()[1].getValues(), (std::vector<std::u16string>{u"None", u"int"}));
    EXPECT_EQ(page.getClassPropertyGroups()[0].getClassProperties()[0].getName(), u"dtype");
    EXPECT_EQ(page.getSeeAlsoInfo().size(), 2u);
    EXPECT_EQ(page.getExamples()[0].getTitle(), u"Basic use");
    EXPECT_EQ(page.getParameters()[0].getName(), u"keepdims");

    RefItem const copy = page.copy();
    EXPECT_TRUE(copy == page);
    EXPECT_TRUE(page == samplePage());

    // Another page filled from this page's host values holds equal records of its own.
    RefItem target;
    target.setHrefProperty(&page.getHrefProperty());
    target.setPackageNameProperty(&page.getPackageNameProperty());
    target.setPurposeProperty(&page.getPurposeProperty());
    target.setIntroducedInProperty(&page.getIntroducedInProperty());
    target.setDescriptionProperty(&page.getDescriptionProperty());
    target.setDeprecationStatusProperty(page.getDeprecationStatusProperty());
    target.setAppThumbnailProperty(page.getAppThumbnailProperty());
    target.setRefEntitiesProperty(page.getRefEntitiesProperty());
    target.setSyntaxGroupProperty(page.getSyntaxGroupsProperty());
    target.setInputGroupsProperty(page.getInputGroupsProperty());
    target.setOutputsProperty(page.getOutputsProperty());
    target.setClassPropertyGroupsProperty(page.getClassPropertyGroupsProperty());
    target.setSeeAlsoProperty(page.getSeeAlsoProperty());
    target.setExamplesProperty(page.getExamplesProperty());
    target.setParametersProperty(page.getParametersProperty());
    EXPECT_TRUE(target == page);
    EXPECT_NE(target.getOutputsProperty(), page.getOutputsProperty());
}

}  // namespace
