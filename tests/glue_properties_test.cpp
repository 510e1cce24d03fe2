// The glue's property tables: every property word of every host class reaches
// its own getter/setter pair by name, and misuse is refused.
#include "support/GlueValues.hpp"
#include "support/HostTest.hpp"

#include <reference/glue/Properties.hpp>
#include <reference/property/AppThumbnail.hpp>
#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/RefItem.hpp>

#include <ovrin/testing.hpp>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using namespace reference::glue;
using reference::property::HostArrayPtr;

std::u16string textFor(PropertyEntry const& entry) {
    return u"value of " + std::u16string(entry.word.begin(), entry.word.end());
}

/// `value` is what testvalues::distinctValue gave for `entry`.
void expectDistinctValue(PropertyEntry const& entry, HostValue const& value) {
    SCOPED_TRACE(std::string(entry.word));
    switch (entry.kind) {
        case PropertyKind::String: EXPECT_EQ(std::get<std::u16string>(value), textFor(entry)); return;
        case PropertyKind::Bool: EXPECT_TRUE(std::get<bool>(value)); return;
        case PropertyKind::Enumeration: {
            oxArray_tag const* const object = std::get<HostArrayPtr>(value).get();
            EXPECT_EQ(ovrin::testing::className(object), entry.enumeration->qualifiedName);
            auto const numbers = enumerationValues(object);
            ASSERT_EQ(numbers.size(), 1u);
            EXPECT_EQ(numbers[0], entry.word.size());
            return;
        }
        case PropertyKind::StringList: {
            oxArray_tag const* const list = std::get<HostArrayPtr>(value).get();
            ASSERT_EQ(oxGetNumberOfElements(list), 2u);
            EXPECT_EQ(oxGetStringElement(list, 0), textFor(entry));
            return;
        }
        case PropertyKind::ObjectArray: {
            oxArray_tag const* const list = std::get<HostArrayPtr>(value).get();
            EXPECT_EQ(ovrin::testing::className(list), entry.elementTable().qualifiedName);
            EXPECT_EQ(oxGetNumberOfElements(list), entry.word.size() % 3 + 1);
            return;
        }
        case PropertyKind::Record:
            EXPECT_EQ(objectOf(std::get<HostArrayPtr>(value).get())->getClass().name(),
                      entry.elementTable().qualifiedName);
            return;
    }
}

class PropertyTables : public HostTest {};

TEST_F(PropertyTables, NameTheHostPropertyWordsOfEveryClassInPageOrder) {
    std::map<std::string, std::vector<std::string>> const expected{
        {"AppThumbnail", {"FileRef", "Alt"}},
        {"ClassProperty", {"Name", "Purpose", "Values", "Href", "DefaultValue"}},
        {"ClassPropertyGroup", {"Title", "Properties"}},
        {"Example", {"Title", "Url", "OpenCommand"}},
        {"Input", {"Name", "Purpose", "Values", "Href", "SyntaxType", "DefaultValue", "IsNameValuePair"}},
        {"InputGroup", {"Title", "Inputs"}},
        {"Output", {"Name", "Purpose", "Values", "Href", "SyntaxType"}},
        {"Parameter", {"Name", "Purpose", "Values", "Href", "DefaultValue"}},
        {"RefEntity", {"Name", "RefEntityType", "FunctionType"}},
        {"RefItem",
         {"Href", "RefEntities", "PackageName", "Purpose", "IntroducedIn", "Description", "AppThumbnail",
          "DeprecationStatus", "SyntaxGroups", "InputGroups", "Outputs", "ClassPropertyGroups", "SeeAlso", "Examples",
          "Parameters"}},
        {"SeeAlso", {"Name", "Url"}},
        {"SyntaxGroup", {"Title", "SyntaxType", "Syntaxes"}},
    };
    std::map<std::string, std::vector<std::string>> actual;
    for (PropertyTable const* table : allTables()) {
        std::string const& name = table->qualifiedName;
        EXPECT_EQ(name.rfind("ovrin.internal.reference.property.", 0), 0u) << name;
        auto& words = actual[name.substr(name.rfind('.') + 1)];
        for (auto const& entry : table->entries) words.emplace_back(entry.word);
    }
    EXPECT_EQ(actual, expected);
}

TEST_F(PropertyTables, EveryPropertyOfEveryClassIsWrittenAndReadBackByItsWord) {
    for (PropertyTable const* table : allTables()) {
        SCOPED_TRACE(table->qualifiedName);
        HostArrayPtr const object = constructObject(*table);
        ocos::COSInterfacePtr const record = objectOf(object.get());
        // Every value is set before any is read, so a setter bound to the wrong member shows.
        for (auto const& entry : table->entries)
            setProperty(*record.get(), entry.word, testvalues::distinctValue(entry));
        for (auto const& entry : table->entries) expectDistinctValue(entry, getProperty(*record.get(), entry.word));
    }
}

TEST_F(PropertyTables, WordsAreExactAndValuesOfAnotherKindAreRefusedChangingNothing) {
    HostArrayPtr const object = constructObject(tableOf<reference::property::RefItem>());
    ocos::COSInterface const& page = *objectOf(object.get()).get();
    EXPECT_THROW(getProperty(page, "href"), std::out_of_range);
    EXPECT_THROW(getProperty(page, "SyntaxGroup"), std::out_of_range);
    EXPECT_THROW(setProperty(page, "Href ", std::u16string(u"x")), std::out_of_range);
    setProperty(page, "Href", std::u16string(u"kept"));
    EXPECT_THROW(setProperty(page, "Href", true), std::invalid_argument);
    EXPECT_THROW(setProperty(page, "Outputs", std::u16string(u"x")), std::invalid_argument);
    EXPECT_EQ(std::get<std::u16string>(getProperty(page, "Href")), u"kept");
}

TEST_F(PropertyTables, OnlyRecordClassesHaveTables) {
    EXPECT_EQ(findTable(enumerationInfo<reference::property::DeprecationStatus>().qualifiedName), nullptr);
    EXPECT_EQ(findTable("ovrin.internal.reference.property.ObjectInfo"), nullptr);
    EXPECT_EQ(findTable("ovrin.internal.reference.property.RefItem"), &tableOf<reference::property::RefItem>());
}

/// A host object of a class the glue has no table for is refused by its class, not read through another table.
TEST_F(PropertyTables, AnObjectOfAClassWithNoTableIsRefused) {
    std::string const name = "ovrin.internal.reference.property.Unlisted";
    ocos::ClassDefinition unlisted;
    unlisted.qualifiedName = name;
    unlisted.nativeType = &typeid(reference::property::AppThumbnail);
    unlisted.dispose = tableOf<reference::property::AppThumbnail>().dispose;
    unlisted.makeDefault = tableOf<reference::property::AppThumbnail>().makeDefault;
    ocos::COSClass::define(std::move(unlisted));
    HostArrayPtr const object(
        omConstructObjectWithClient(ocos::internal::makeInterned(name), 0, nullptr, COSGetPublicClient()), false);
    ocos::COSInterface const& record = *objectOf(object.get()).get();
    EXPECT_THROW(tableOf(record), std::invalid_argument);
    EXPECT_THROW(getProperty(record, "FileRef"), std::invalid_argument);
    EXPECT_THROW(setProperty(record, "FileRef", std::u16string(u"x")), std::invalid_argument);
}

}  // namespace
