// The three groups: their object-array and string-list properties, equality and copies.
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <reference/property/ClassPropertyGroup.hpp>
#include <reference/property/InputGroup.hpp>
#include <reference/property/SyntaxGroup.hpp>

#include <ovrin/ocos.hpp>
#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>
#include <vector>

namespace {

using namespace reference::property;

constexpr char inputClass[] = "ovrin.internal.reference.property.Input";
constexpr char classPropertyClass[] = "ovrin.internal.reference.property.ClassProperty";

template <class T>
T named(std::u16string const& name) {
    T record;
    record.setNameProperty(&name);
    return record;
}

template <class T>
std::vector<T> namedRecords(std::vector<std::u16string> const& names) {
    std::vector<T> records;
    for (auto const& name : names) records.push_back(named<T>(name));
    return records;
}

/// The records wrapped by a host object array, copied out in order.
template <class T>
std::vector<T> recordsOf(oxArray_tag const* array) {
    std::vector<T> records;
    for (std::size_t i = 0; i < oxGetNumberOfElements(array); ++i)
        records.push_back(static_cast<T*>(omGetArrayElement(array, i)->getData(typeid(T)))->copy());
    return records;
}

InputGroup inputGroup(std::u16string const& title, std::vector<std::u16string> const& names) {
    InputGroup group;
    group.setTitleProperty(&title);
    group.setInputsProperty(testvalues::objectArray(inputClass, namedRecords<Input>(names)).get());
    return group;
}

using GroupRecord = HostTest;

TEST_F(GroupRecord, FreshGroupsGiveEmptyScopedArraysOfTheirElementClass) {
    InputGroup const inputs;
    ClassPropertyGroup const properties;
    oxArray_tag const* a = inputs.getInputsProperty();
    oxArray_tag const* b = properties.getPropertiesProperty();
    EXPECT_EQ(ovrin::testing::className(a), inputClass);
    EXPECT_EQ(ovrin::testing::className(b), classPropertyClass);
    for (oxArray_tag const* array : {a, b}) {
        EXPECT_EQ(oxGetM(array), 1u);
        EXPECT_EQ(oxGetN(array), 0u);
        EXPECT_EQ(oxGetArrayScope(array), 6);
        EXPECT_TRUE(oxIsInternal(array));
    }
    EXPECT_EQ(inputs.getInputsProperty(), a);
    EXPECT_EQ(properties.getPropertiesProperty(), b);
}

TEST_F(GroupRecord, SetInputsStoresCopiesAndCachesAFreshArrayInTheSameOrder) {
    InputGroup group;
    oxArray_tag const* before = group.getInputsProperty();
    auto const records = namedRecords<Input>({u"x", u"y", u"z"});
    HostArrayPtr const input = testvalues::objectArray(inputClass, records);
    group.setInputsProperty(input.get());

    EXPECT_EQ(group.getInputs(), records);
    oxArray_tag const* after = group.getInputsProperty();
    EXPECT_NE(after, input.get());
    EXPECT_NE(after, before);
    EXPECT_EQ(recordsOf<Input>(after), records);
}

TEST_F(GroupRecord, EqualityComparesTitleThenElementsInOrder) {
    EXPECT_TRUE(inputGroup(u"t", {u"a", u"b"}) == inputGroup(u"t", {u"a", u"b"}));
    EXPECT_FALSE(inputGroup(u"t", {u"a", u"b"}) == inputGroup(u"t", {u"b", u"a"}));
    EXPECT_FALSE(inputGroup(u"t", {u"a"}) == inputGroup(u"t", {u"a", u"a"}));
    EXPECT_FALSE(inputGroup(u"t", {u"a"}) == inputGroup(u"T", {u"a"}));

    InputGroup built = inputGroup(u"t", {u"a"});
    static_cast<void>(built.getInputsProperty());
    EXPECT_TRUE(built == inputGroup(u"t", {u"a"}));
}

TEST_F(GroupRecord, CopyOfAnInputGroupStartsWithAnEmptyCacheAndEqualInputs) {
    InputGroup const source = inputGroup(u"t", {u"a", u"b"});
    oxArray_tag const* sourceArray = source.getInputsProperty();
    InputGroup const copy = source.copy();
    EXPECT_TRUE(copy == source);
    oxArray_tag const* copyArray = copy.getInputsProperty();
    EXPECT_NE(copyArray, sourceArray);
    EXPECT_EQ(recordsOf<Input>(copyArray), source.getInputs());
}

TEST_F(GroupRecord, CopiedInputsShareTheirOwnCachesWithTheSourceInputs) {
    Input element = named<Input>(u"a");
    static_cast<void>(element.getValuesProperty());
    InputGroup group;
    group.setInputsProperty(testvalues::objectArray(inputClass, std::vector<Input>{element}).get());
    InputGroup const copy = group.copy();
    EXPECT_EQ(copy.getInputs().front().getValuesProperty(), group.getInputs().front().getValuesProperty());
}

TEST_F(GroupRecord, ClassPropertyGroupStoresCopiesAndItsCopyBuildsItsOwnArray) {
    ClassPropertyGroup source;
    auto const records = namedRecords<ClassProperty>({u"Color", u"Width"});
    HostArrayPtr const input = testvalues::objectArray(classPropertyClass, records);
    source.setPropertiesProperty(input.get());
    EXPECT_EQ(source.getClassProperties(), records);
    oxArray_tag const* sourceArray = source.getPropertiesProperty();
    EXPECT_NE(sourceArray, input.get());
    EXPECT_EQ(recordsOf<ClassProperty>(sourceArray), records);

    ClassPropertyGroup const copy = source.copy();
    EXPECT_TRUE(copy == source);
    EXPECT_NE(copy.getPropertiesProperty(), sourceArray);
}

SyntaxGroup syntaxGroup(std::u16string const& title, std::uint32_t type, std::vector<std::u16string> const& lines) {
    SyntaxGroup group;
    group.setTitleProperty(&title);
    group.setSyntaxTypeProperty(
        testvalues::enumObject("ovrin.internal.reference.property.SyntaxType", {type}).get());
    group.setSyntaxesProperty(testvalues::stringArray(lines).get());
    return group;
}

TEST_F(GroupRecord, SyntaxGroupComparesTitleTypeThenLinesAndIgnoresCaches) {
    SyntaxGroup const base = syntaxGroup(u"Syntax", SyntaxType::Usage, {u"f(x)", u"f(x, y)"});
    EXPECT_TRUE(base == syntaxGroup(u"Syntax", SyntaxType::Usage, {u"f(x)", u"f(x, y)"}));
    EXPECT_FALSE(base == syntaxGroup(u"Syntax", SyntaxType::CreateObject, {u"f(x)", u"f(x, y)"}));
    EXPECT_FALSE(base == syntaxGroup(u"Syntax", SyntaxType::Usage, {u"f(x, y)", u"f(x)"}));
    EXPECT_FALSE(base == syntaxGroup(u"Syntax", SyntaxType::Usage, {u"f(x)"}));
    EXPECT_FALSE(base == syntaxGroup(u"syntax", SyntaxType::Usage, {u"f(x)", u"f(x, y)"}));

    SyntaxGroup unbuilt;
    SyntaxGroup built;
    static_cast<void>(built.getSyntaxesProperty());
    EXPECT_TRUE(built == unbuilt);
}

TEST_F(GroupRecord, SyntaxGroupCopySharesBothCaches) {
    SyntaxGroup const source = syntaxGroup(u"Syntax", SyntaxType::Usage, {u"f(x)"});
    oxArray_tag const* lines = source.getSyntaxesProperty();
    oxArray_tag const* type = source.getSyntaxTypeProperty();
    long const linesRefs = ovrin::testing::referenceCount(lines);
    SyntaxGroup const copy = source.copy();
    EXPECT_TRUE(copy == source);
    EXPECT_EQ(copy.getSyntaxesProperty(), lines);
    EXPECT_EQ(copy.getSyntaxTypeProperty(), type);
    EXPECT_EQ(ovrin::testing::referenceCount(lines), linesRefs + 1);
}

}  // namespace
