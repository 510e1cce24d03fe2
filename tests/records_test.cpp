// Every record class through the glue's property tables: the property words of
// each class, each reaching its own getter/setter pair by name, misuse refused;
// equality and copies of every property; the orders in which texts and lists
// compare; and the records without host properties.
#include "support/GlueValues.hpp"
#include "support/HostTest.hpp"
#include "support/HostValues.hpp"

#include <reference/glue/Properties.hpp>
#include <reference/property/AppThumbnail.hpp>
#include <reference/property/HeaderInfo.hpp>
#include <reference/property/RecordProducer.hpp>
#include <reference/property/RefItem.hpp>
#include <reference/property/RefItemLookup.hpp>

#include <ovrin/testing.hpp>

#include <gtest/gtest.h>
#include <utf8.h>

#include <map>
#include <string>
#include <vector>

namespace {

using namespace reference::property;
using namespace reference::glue;

/// What tells one value of `entry`'s kind from another: the text, the flag, or the array's class,
/// size, first text (a list) and number (an enumeration).
std::string fingerprint(PropertyEntry const& entry, HostValue const& value) {
    if (auto const* text = std::get_if<std::u16string>(&value)) return utf8::utf16to8(*text);
    if (auto const* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
    oxArray_tag const* const array = std::get<HostArrayPtr>(value).get();
    std::string print = ovrin::testing::className(array) + " of " + std::to_string(oxGetNumberOfElements(array));
    if (entry.kind == PropertyKind::StringList) print += ", first " + utf8::utf16to8(oxGetStringElement(array, 0));
    if (entry.kind == PropertyKind::Enumeration) print += ", number " + std::to_string(testvalues::hostNumber(array));
    return print;
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
        for (auto const& entry : table->entries)
            EXPECT_EQ(fingerprint(entry, getProperty(*record.get(), entry.word)),
                      fingerprint(entry, testvalues::distinctValue(entry)));
    }
}

TEST_F(PropertyTables, WordsAreExactAndValuesOfAnotherKindAreRefusedChangingNothing) {
    HostArrayPtr const object = constructObject(tableOf<RefItem>());
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
    EXPECT_EQ(findTable(enumerationInfo<DeprecationStatus>().qualifiedName), nullptr);
    EXPECT_EQ(findTable("ovrin.internal.reference.property.ObjectInfo"), nullptr);
    EXPECT_EQ(findTable("ovrin.internal.reference.property.RefItem"), &tableOf<RefItem>());
}

/// A host object of a class the glue has no table for is refused by its class, not read through another table.
TEST_F(PropertyTables, AnObjectOfAClassWithNoTableIsRefused) {
    std::string const name = "ovrin.internal.reference.property.Unlisted";
    ocos::ClassDefinition unlisted;
    unlisted.qualifiedName = name;
    unlisted.nativeType = &typeid(AppThumbnail);
    unlisted.dispose = tableOf<AppThumbnail>().dispose;
    unlisted.makeDefault = tableOf<AppThumbnail>().makeDefault;
    ocos::COSClass::define(std::move(unlisted));
    HostArrayPtr const object(
        omConstructObjectWithClient(ocos::internal::makeInterned(name), 0, nullptr, COSGetPublicClient()), false);
    ocos::COSInterface const& record = *objectOf(object.get()).get();
    EXPECT_THROW(tableOf(record), std::invalid_argument);
    EXPECT_THROW(getProperty(record, "FileRef"), std::invalid_argument);
    EXPECT_THROW(setProperty(record, "FileRef", std::u16string(u"x")), std::invalid_argument);
}

template <class T>
class EveryRecord : public HostTest {};
using RecordClasses = ::testing::Types<AppThumbnail, ClassProperty, ClassPropertyGroup, Example, Input, InputGroup,
                                       Output, Parameter, RefEntity, RefItem, SeeAlso, SyntaxGroup>;
TYPED_TEST_SUITE(EveryRecord, RecordClasses);

TYPED_TEST(EveryRecord, EachPropertyAloneTakesPartInEquality) {
    for (PropertyEntry const& entry : tableOf<TypeParam>().entries) {
        TypeParam const plain;
        TypeParam changed;
        testvalues::assign(entry, &changed, testvalues::distinctValue(entry));
        EXPECT_FALSE(changed == plain) << entry.word;
        EXPECT_FALSE(plain == changed) << entry.word;
    }
}

TYPED_TEST(EveryRecord, FilledCachesTakeNoPartInEquality) {
    TypeParam const plain;
    TypeParam read;
    for (PropertyEntry const& entry : tableOf<TypeParam>().entries) testvalues::cachedArray(entry, &read);
    EXPECT_TRUE(read == plain);
    EXPECT_TRUE(plain == read);
}

// Owners of object arrays leave every slot of the copy empty; the other records share theirs,
// and a later set on the source leaves the copy's shared array and field as they were.
TYPED_TEST(EveryRecord, CopyEqualsItsSourceAndSharesOrEmptiesTheCachesAsItsClassDoes) {
    auto const& table = tableOf<TypeParam>();
    bool const owner = testvalues::ownsRecords(table);
    TypeParam source = testvalues::distinctRecord<TypeParam>();
    std::vector<oxArray_tag const*> cached;
    std::vector<long> references;
    for (PropertyEntry const& entry : table.entries) {
        cached.push_back(testvalues::cachedArray(entry, &source));
        references.push_back(cached.back() ? ovrin::testing::referenceCount(cached.back()) : 0);
    }
    TypeParam const copy = source.copy();
    EXPECT_TRUE(copy == source);
    for (std::size_t i = 0; i < table.entries.size(); ++i) {
        PropertyEntry const& entry = table.entries[i];
        if (cached[i] == nullptr) continue;
        EXPECT_EQ(ovrin::testing::referenceCount(cached[i]), references[i] + (owner ? 0 : 1)) << entry.word;
        if (owner) {
            EXPECT_NE(testvalues::cachedArray(entry, &copy), cached[i]) << entry.word;
        } else {
            TypeParam const fresh;
            testvalues::assign(entry, &source, HostArrayPtr(testvalues::cachedArray(entry, &fresh)));
            EXPECT_EQ(testvalues::cachedArray(entry, &copy), cached[i]) << entry.word;
        }
    }
    EXPECT_TRUE(copy == testvalues::distinctRecord<TypeParam>());
}

using RecordOrder = HostTest;

TEST_F(RecordOrder, TextsCompareByLengthAndEveryCodeUnit) {
    auto named = [](std::u16string const& text) {
        SeeAlso record;
        record.setNameProperty(&text);
        return record;
    };
    EXPECT_TRUE(named(std::u16string(u"a\0b", 3)) == named(std::u16string(u"a\0b", 3)));
    EXPECT_FALSE(named(std::u16string(u"a\0b", 3)) == named(std::u16string(u"a\0c", 3)));
    EXPECT_FALSE(named(std::u16string(u"ab\0", 3)) == named(u"ab"));
    EXPECT_FALSE(named(u"abc") == named(u"aBc"));
    EXPECT_FALSE(named(u"\xffff") == named(u"\x0001"));
}

TEST_F(RecordOrder, ListsCompareByCountThenElementsInOrder) {
    auto withValues = [](std::vector<std::u16string> const& texts) {
        Parameter record;
        record.setValuesProperty(testvalues::stringArray(texts).get());
        return record;
    };
    EXPECT_FALSE(withValues({u""}) == Parameter());
    EXPECT_FALSE(withValues({u"a", u"b"}) == withValues({u"b", u"a"}));
    auto withInputs = [&](std::vector<std::u16string> const& names) {
        std::vector<Input> inputs;
        for (auto const& name : names) inputs.emplace_back().setNameProperty(&name);
        InputGroup group;
        group.setInputsProperty(testvalues::objectArray(inputs).get());
        return group;
    };
    EXPECT_TRUE(withInputs({u"a", u"b"}) == withInputs({u"a", u"b"}));
    EXPECT_FALSE(withInputs({u"a", u"b"}) == withInputs({u"b", u"a"}));
    EXPECT_FALSE(withInputs({u"a"}) == withInputs({u"a", u"a"}));
}

TEST_F(RecordOrder, ElementsCopiedWithTheirGroupShareTheirOwnCaches) {
    Input element;
    oxArray_tag const* const values = element.getValuesProperty();
    InputGroup group;
    group.setInputsProperty(testvalues::objectArray(std::vector<Input>{element}).get());
    oxArray_tag const* const stored = group.getInputs().front().getValuesProperty();
    EXPECT_EQ(stored, values);
    EXPECT_EQ(group.copy().getInputs().front().getValuesProperty(), stored);
}

TEST(RecordsWithoutHostProperties, HeaderInfoKeepsItsBaseCodeThroughHostSettersAndCopies) {
    HeaderInfo header = RecordProducer::makeHeaderInfo(u"product", u"BASE", u"folder", u"location");
    std::u16string const product = u"other product", folder = u"other folder", location = u"other location";
    header.setProductNameProperty(&product);
    header.setHelpFolderProperty(&folder);
    header.setHelpLocationProperty(&location);
    HeaderInfo const copy = header.copy();
    EXPECT_EQ(copy.getProductName(), product);
    EXPECT_EQ(copy.getBaseCode(), u"BASE");
    EXPECT_EQ(copy.getHelpFolder(), folder);
    EXPECT_EQ(copy.getHelpLocation(), location);
}

TEST(RecordsWithoutHostProperties, RefItemLookupCopyKeepsEveryFieldExactly) {
    RefItemLookup const copy = RecordProducer::makeRefItemLookup(u"numpy.sum", static_cast<RefEntityType::Value>(40),
                                                                 u"Sum of array elements.", true, u"numpy.sum.html",
                                                                 FunctionType::StaticMethod)
                                   .copy();
    EXPECT_EQ(copy.getName(), u"numpy.sum");
    EXPECT_EQ(static_cast<std::uint32_t>(copy.getType()), 40u);
    EXPECT_EQ(copy.getPurpose(), u"Sum of array elements.");
    EXPECT_TRUE(copy.isDeprecated());
    EXPECT_EQ(copy.getHref(), u"numpy.sum.html");
    EXPECT_EQ(copy.getFunctionType(), FunctionType::StaticMethod);
}

}  // namespace
