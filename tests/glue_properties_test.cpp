// The glue's property tables: every property word of every host class reaches
// its own getter/setter pair by name, and misuse is refused.
#include "support/GlueValues.hpp"
#include "support/HostTest.hpp"
#include "support/Vocabularies.hpp"

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

TEST_F(PropertyTables, EnumerationMembersAreTheKeysAndNumbersOfTheClass) {
    auto const& status = enumerationInfo<reference::property::DeprecationStatus>();
    EXPECT_TRUE(status.namesMember("current"));  // the default's own key
    EXPECT_TRUE(status.namesMember("deny"));
    EXPECT_FALSE(status.namesMember("Current"));  // a display text, not a key
    EXPECT_TRUE(status.hasMember(5));
    EXPECT_FALSE(status.hasMember(6));
    auto const& entity = enumerationInfo<reference::property::RefEntityType>();
    EXPECT_TRUE(entity.namesMember(""));
    EXPECT_FALSE(entity.namesMember("functions"));
    EXPECT_TRUE(entity.hasMember(27));
    EXPECT_FALSE(entity.hasMember(28));
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

/// The member view, keyOf and the library's two conversions agree with the tests' own table of each vocabulary.
TEST_F(PropertyTables, EnumerationMemberViewsMatchEachVocabulary) {
    std::vector<std::string_view> seen;
    for (EnumerationInfo const* info : allEnumerations()) seen.push_back(info->className);
    EXPECT_EQ(seen, (std::vector<std::string_view>{"DeprecationStatus", "FunctionType", "RefEntityType", "SyntaxType"}));
    testvalues::forEachVocabulary([](auto type) {
        using Enum = typename decltype(type)::type;
        using Vocabulary = testvalues::Vocabulary<Enum>;
        EnumerationInfo const& info = enumerationInfo<Enum>();
        SCOPED_TRACE(std::string(info.className));
        ASSERT_EQ(info.members.size(), std::size(Vocabulary::members));
        EXPECT_EQ(info.memberCount, info.members.size());
        for (std::uint32_t number = 0; number < info.memberCount; ++number) {
            EnumerationMember const& member = info.members[number];
            EXPECT_EQ(member.value, number);
            EXPECT_EQ(member.key, Vocabulary::members[number].key);
            EXPECT_EQ(member.displayText, Vocabulary::members[number].display);
            EXPECT_EQ(info.keyOf(number), member.key);
            EXPECT_EQ(info.keyToValue(member.key), number);
            EXPECT_EQ(info.displayText(number), member.displayText);
        }
        EXPECT_EQ(info.defaultKey, Vocabulary::members[Vocabulary::defaultValue].key);
        EXPECT_EQ(info.keyOf(info.memberCount), std::nullopt);
        EXPECT_EQ(info.keyOf(0xFFFFFFFFu), std::nullopt);
    });
    EXPECT_EQ(enumerationInfo<reference::property::RefEntityType>().keyOf(27), std::optional<std::string_view>(""));
}

}  // namespace
