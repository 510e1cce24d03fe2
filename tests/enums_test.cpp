// The four vocabularies, against the tests' own table of each: key texts to
// values, values to display texts, the default for every other text or number,
// host class names, and the glue's member view derived from the same source.
#include "support/Vocabularies.hpp"

#include <reference/glue/Enumerations.hpp>

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace reference::property;
using reference::glue::EnumerationInfo;
using reference::glue::enumerationInfo;
using testvalues::Member;
using testvalues::Vocabulary;

template <class Enum>
class Enumeration : public ::testing::Test {
protected:
    static std::string displayOf(std::uint32_t number) {
        return Enum::enumToString(static_cast<typename Enum::Value>(number));
    }
};
using EnumerationClasses = ::testing::Types<DeprecationStatus, FunctionType, RefEntityType, SyntaxType>;
TYPED_TEST_SUITE(Enumeration, EnumerationClasses);

TYPED_TEST(Enumeration, EveryKeyGivesItsValueAndEveryValueItsDisplayTextInTheLibraryAndTheGlue) {
    using Vocabulary = Vocabulary<TypeParam>;
    EnumerationInfo const& info = enumerationInfo<TypeParam>();
    ASSERT_EQ(info.members.size(), std::size(Vocabulary::members));
    EXPECT_EQ(info.memberCount, info.members.size());
    for (std::uint32_t number = 0; number < info.memberCount; ++number) {
        Member const& member = Vocabulary::members[number];
        SCOPED_TRACE(member.key);
        EXPECT_EQ(TypeParam::stringToEnum(member.key), number);
        EXPECT_EQ(this->displayOf(number), member.display);
        EXPECT_EQ(info.members[number].value, number);
        EXPECT_EQ(info.members[number].key, member.key);
        EXPECT_EQ(info.members[number].displayText, member.display);
        EXPECT_EQ(info.keyOf(number), member.key);
        EXPECT_EQ(info.keyToValue(member.key), number);
        EXPECT_EQ(info.displayText(number), member.display);
        EXPECT_TRUE(info.namesMember(member.key));
        EXPECT_TRUE(info.hasMember(number));
    }
    EXPECT_EQ(TypeParam::getDefaultValue(), Vocabulary::defaultValue);
    EXPECT_EQ(info.defaultKey, Vocabulary::members[Vocabulary::defaultValue].key);
    EXPECT_FALSE(info.hasMember(info.memberCount));
    EXPECT_EQ(info.keyOf(info.memberCount), std::nullopt);
    EXPECT_EQ(info.keyOf(0xFFFFFFFFu), std::nullopt);
}

/// No display text is a key, and neither is a key with a blank, a capital or a letter more or less.
TYPED_TEST(Enumeration, OtherTextsAndNumbersGiveTheDefault) {
    auto const fallback = TypeParam::getDefaultValue();
    EXPECT_EQ(TypeParam::stringToEnum(""), fallback);
    for (Member const& member : Vocabulary<TypeParam>::members) {
        std::string const key(member.key);
        std::string upper = key;
        if (!upper.empty()) upper[0] = static_cast<char>(upper[0] - 'a' + 'A');
        for (std::string const& text : {std::string(member.display), " " + key, key + " ", key + "x", upper,
                                        key.substr(0, key.empty() ? 0 : key.size() - 1)}) {
            if (text == key) continue;
            EXPECT_EQ(TypeParam::stringToEnum(text), fallback) << '"' << text << '"';
        }
        if (member.display != member.key) {
            EXPECT_FALSE(enumerationInfo<TypeParam>().namesMember(member.display)) << member.display;
        }
    }
    std::uint32_t const count = std::size(Vocabulary<TypeParam>::members);
    for (std::uint32_t number : {count, count + 12, std::numeric_limits<std::uint32_t>::max()})
        EXPECT_EQ(this->displayOf(number), this->displayOf(fallback)) << number;
}

TYPED_TEST(Enumeration, HostIdentityIsTheSharedNamespaceAndTheClassName) {
    EXPECT_STREQ(TypeParam::getOCOSNamespaceName(), "ovrin.internal.reference.property");
    EXPECT_STREQ(TypeParam::getOCOSClassName(), Vocabulary<TypeParam>::className);
}

TEST(Enumerations, LookupUsesTheWholeViewNotATerminatingZero) {
    constexpr std::string_view withZero("tessark\0x", 9);
    EXPECT_EQ(RefEntityType::stringToEnum(withZero), RefEntityType::Unknown);
    EXPECT_EQ(RefEntityType::stringToEnum(withZero.substr(0, 7)), RefEntityType::Tessark);
    EXPECT_EQ(RefEntityType::stringToEnum(std::string_view("properties", 7)), RefEntityType::Unknown);
    EXPECT_EQ(RefEntityType::stringToEnum(std::string_view("\0", 1)), RefEntityType::Unknown);
    EXPECT_FALSE(enumerationInfo<RefEntityType>().namesMember("functions"));
}

TEST(Enumerations, TheGlueListsTheFourClassesInOrder) {
    std::vector<std::string_view> seen;
    for (EnumerationInfo const* info : reference::glue::allEnumerations()) seen.push_back(info->className);
    EXPECT_EQ(seen, (std::vector<std::string_view>{"DeprecationStatus", "FunctionType", "RefEntityType", "SyntaxType"}));
}

}  // namespace
