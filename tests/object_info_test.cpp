// ObjectInfo and its four kinds: properties, equality and member-wise copies.
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <reference/property/ClassProperty.hpp>
#include <reference/property/Input.hpp>
#include <reference/property/Output.hpp>
#include <reference/property/Parameter.hpp>

#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using namespace reference::property;

HostArrayPtr syntaxTypeObject(std::uint32_t number) {
    return testvalues::enumObject("ovrin.internal.reference.property.SyntaxType", {number});
}

template <class T>
using Change = std::function<void(T&)>;

/// Each change alone makes a record unequal to an unchanged one, in both directions.
template <class T>
void expectEachChangeDiffers(std::vector<Change<T>> const& changes) {
    for (std::size_t i = 0; i < changes.size(); ++i) {
        T const plain;
        T changed;
        changes[i](changed);
        EXPECT_FALSE(changed == plain) << "change " << i;
        EXPECT_FALSE(plain == changed) << "change " << i;
    }
}

/// Changes to the ObjectInfo part, shared by every kind.
template <class T>
std::vector<Change<T>> baseChanges() {
    return {
        [](T& r) { std::u16string const v = u"n"; r.setNameProperty(&v); },
        [](T& r) { std::u16string const v = u"p"; r.setPurposeProperty(&v); },
        [](T& r) { r.setValuesProperty(testvalues::stringArray({u""}).get()); },
        [](T& r) { std::u16string const v = u"h"; r.setHrefProperty(&v); },
    };
}

using ObjectInfoRecord = HostTest;

TEST_F(ObjectInfoRecord, EveryFieldOfEveryKindTakesPartInEquality) {
    auto input = baseChanges<Input>();
    input.push_back([](Input& r) { r.setSyntaxTypeProperty(syntaxTypeObject(SyntaxType::Usage).get()); });
    input.push_back([](Input& r) { r.setIsNameValuePairProperty(true); });
    input.push_back([](Input& r) { std::u16string const v = u"0"; r.setDefaultValueProperty(&v); });
    expectEachChangeDiffers(input);

    auto output = baseChanges<Output>();
    output.push_back([](Output& r) { r.setSyntaxTypeProperty(syntaxTypeObject(SyntaxType::CreateObject).get()); });
    expectEachChangeDiffers(output);

    auto parameter = baseChanges<Parameter>();
    parameter.push_back([](Parameter& r) { std::u16string const v = u"0"; r.setDefaultValueProperty(&v); });
    expectEachChangeDiffers(parameter);

    auto property = baseChanges<ClassProperty>();
    property.push_back([](ClassProperty& r) { std::u16string const v = u"0"; r.setDefaultValueProperty(&v); });
    expectEachChangeDiffers(property);
}

TEST_F(ObjectInfoRecord, ValuesCompareByCountThenInOrder) {
    Parameter none, oneEmpty, ab, ba;
    oneEmpty.setValuesProperty(testvalues::stringArray({u""}).get());
    ab.setValuesProperty(testvalues::stringArray({u"a", u"b"}).get());
    ba.setValuesProperty(testvalues::stringArray({u"b", u"a"}).get());
    EXPECT_TRUE(none == Parameter());
    EXPECT_FALSE(none == oneEmpty);
    EXPECT_FALSE(ab == ba);
}

TEST_F(ObjectInfoRecord, NamesCompareByLengthAndExactCodeUnits) {
    auto named = [](std::u16string const& text) {
        Output record;
        record.setNameProperty(&text);
        return record;
    };
    EXPECT_FALSE(named(u"abc") == named(u"abcd"));
    EXPECT_FALSE(named(u"abc") == named(u"aBc"));
    EXPECT_FALSE(named(std::u16string(u"a\0b", 3)) == named(std::u16string(u"a\0c", 3)));
    EXPECT_TRUE(named(u"\u00e9t\u00e9") == named(u"\u00e9t\u00e9"));
}

TEST_F(ObjectInfoRecord, FilledCachesDoNotTakePartInEquality) {
    Input built, plain;
    static_cast<void>(built.getValuesProperty());
    static_cast<void>(built.getSyntaxTypeProperty());
    EXPECT_TRUE(built == plain);
    EXPECT_TRUE(plain == built);
}

TEST_F(ObjectInfoRecord, CopySharesEveryCachedArrayWithTheSource) {
    Input source;
    source.setValuesProperty(testvalues::stringArray({u"x"}).get());
    oxArray_tag const* values = source.getValuesProperty();
    oxArray_tag const* syntaxType = source.getSyntaxTypeProperty();
    long const valuesRefs = ovrin::testing::referenceCount(values);
    long const syntaxTypeRefs = ovrin::testing::referenceCount(syntaxType);

    Input const copy = source.copy();
    EXPECT_TRUE(copy == source);
    EXPECT_EQ(copy.getValuesProperty(), values);
    EXPECT_EQ(copy.getSyntaxTypeProperty(), syntaxType);
    EXPECT_EQ(ovrin::testing::referenceCount(values), valuesRefs + 1);
    EXPECT_EQ(ovrin::testing::referenceCount(syntaxType), syntaxTypeRefs + 1);
}

TEST_F(ObjectInfoRecord, SetOnTheSourceAfterACopyLeavesTheCopyAlone) {
    Parameter source;
    source.setValuesProperty(testvalues::stringArray({u"old"}).get());
    oxArray_tag const* shared = source.getValuesProperty();
    Parameter const copy = source.copy();

    source.setValuesProperty(testvalues::stringArray({u"new"}).get());
    EXPECT_EQ(copy.getValues(), std::vector<std::u16string>{u"old"});
    EXPECT_EQ(copy.getValuesProperty(), shared);
    EXPECT_NE(source.getValuesProperty(), shared);
}

}  // namespace
