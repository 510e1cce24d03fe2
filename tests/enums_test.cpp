// The four vocabularies: key texts to values, values to display texts, defaults,
// fallbacks and host class names.
#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/SyntaxType.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

using namespace reference::property;

namespace {

struct Member {
    std::string_view key;
    std::uint32_t value;
    std::string_view display;
};

std::vector<Member> const deprecationStatusMembers = {
    {"current", 0, "Current"}, {"announce", 1, "Announce"}, {"warn", 2, "Warn"},
    {"error", 3, "Error"},     {"delete", 4, "Delete"},     {"deny", 5, "Deny"},
};

std::vector<Member> const functionTypeMembers = {
    {"simple", 0, "Simple"},
    {"constructor", 1, "Constructor"},
    {"instancemethod", 2, "Instance_Method"},
    {"applauncher", 3, "App_Launcher"},
    {"toollauncher", 4, "Tool_Launcher"},
    {"staticmethod", 5, "Static_Method"},
    {"n/a", 6, "NA"},
};

std::vector<Member> const refEntityTypeMembers = {
    {"function", 0, "Function"},
    {"class", 1, "Class"},
    {"method", 2, "Method"},
    {"constructor", 3, "Constructor"},
    {"property", 4, "Property"},
    {"properties", 5, "Properties"},
    {"object", 6, "Object"},
    {"sysobj", 7, "Sys_Obj"},
    {"package", 8, "Package"},
    {"quillpadtask", 9, "Quillpad_Task"},
    {"settings", 10, "Settings"},
    {"keyword", 11, "Keyword"},
    {"block", 12, "Block"},
    {"mdlcheck", 13, "Model_Check"},
    {"mdlguideline", 14, "Model_Guideline"},
    {"reportgen", 15, "Report_Gen"},
    {"corvanelanguage", 16, "Corvane_Language"},
    {"corvaneblock", 17, "Corvane_Block"},
    {"tessark", 18, "Tessark"},
    {"configparam", 19, "Config_Param"},
    {"runtimecheck", 20, "Runtime_Check"},
    {"analysisopt", 21, "Analysis_Opt"},
    {"c", 22, "C"},
    {"cpp", 23, "Cpp"},
    {"app", 24, "App"},
    {"tool", 25, "Tool"},
    {"scene", 26, "Scene"},
    {"", 27, "Unknown"},
};

std::vector<Member> const syntaxTypeMembers = {
    {"createobject", 0, "CreateObject"},
    {"usage", 1, "Usage"},
    {"n/a", 2, "NA"},
};

template <class Enum>
void expectEveryMemberConverts(std::vector<Member> const& members) {
    for (Member const& member : members) {
        SCOPED_TRACE(std::string(member.key));
        EXPECT_EQ(Enum::stringToEnum(member.key), member.value);
        EXPECT_EQ(Enum::enumToString(static_cast<typename Enum::Value>(member.value)), member.display);
    }
}

/// No display text is a key, and neither is a key with a blank, a capital or a letter missing.
template <class Enum>
void expectNonKeysGiveDefault(std::vector<Member> const& members) {
    auto const fallback = Enum::getDefaultValue();
    for (Member const& member : members) {
        SCOPED_TRACE(std::string(member.key));
        std::string const key(member.key);
        EXPECT_EQ(Enum::stringToEnum(member.display), fallback);
        EXPECT_EQ(Enum::stringToEnum(" " + key), fallback);
        EXPECT_EQ(Enum::stringToEnum(key + " "), fallback);
        EXPECT_EQ(Enum::stringToEnum(key + "x"), fallback);
        if (!key.empty()) {
            std::string upper = key;
            upper[0] = static_cast<char>(upper[0] - 'a' + 'A');
            EXPECT_EQ(Enum::stringToEnum(upper), fallback);
            EXPECT_EQ(Enum::stringToEnum(key.substr(0, key.size() - 1)), fallback);
        }
    }
}

template <class Enum>
std::string displayOf(std::uint32_t number) {
    return Enum::enumToString(static_cast<typename Enum::Value>(number));
}

constexpr std::uint32_t largest = std::numeric_limits<std::uint32_t>::max();

}  // namespace

TEST(Enumerations, EveryKeyGivesItsValueAndEveryValueItsDisplayText) {
    expectEveryMemberConverts<DeprecationStatus>(deprecationStatusMembers);
    expectEveryMemberConverts<FunctionType>(functionTypeMembers);
    expectEveryMemberConverts<RefEntityType>(refEntityTypeMembers);
    expectEveryMemberConverts<SyntaxType>(syntaxTypeMembers);
}

TEST(Enumerations, DisplayTextsAndAlteredKeysGiveTheDefault) {
    expectNonKeysGiveDefault<DeprecationStatus>(deprecationStatusMembers);
    expectNonKeysGiveDefault<FunctionType>(functionTypeMembers);
    expectNonKeysGiveDefault<RefEntityType>(refEntityTypeMembers);
    expectNonKeysGiveDefault<SyntaxType>(syntaxTypeMembers);
}

TEST(Enumerations, EmptyTextGivesTheDefault) {
    EXPECT_EQ(DeprecationStatus::stringToEnum(""), DeprecationStatus::Current);
    EXPECT_EQ(FunctionType::stringToEnum(""), FunctionType::NA);
    EXPECT_EQ(RefEntityType::stringToEnum(""), RefEntityType::Unknown);
    EXPECT_EQ(SyntaxType::stringToEnum(""), SyntaxType::NA);
}

TEST(Enumerations, LookupUsesTheWholeViewNotATerminatingZero) {
    constexpr std::string_view withZero("tessark\0x", 9);
    EXPECT_EQ(RefEntityType::stringToEnum(withZero), RefEntityType::Unknown);
    EXPECT_EQ(RefEntityType::stringToEnum(withZero.substr(0, 7)), RefEntityType::Tessark);
    EXPECT_EQ(RefEntityType::stringToEnum(std::string_view("properties", 7)), RefEntityType::Unknown);
    EXPECT_EQ(RefEntityType::stringToEnum(std::string_view("\0", 1)), RefEntityType::Unknown);
}

TEST(Enumerations, NumbersOutsideTheMembersGiveTheFallbackText) {
    EXPECT_EQ(displayOf<DeprecationStatus>(6), "Current");
    EXPECT_EQ(displayOf<DeprecationStatus>(largest), "Current");
    EXPECT_EQ(displayOf<FunctionType>(7), "NA");
    EXPECT_EQ(displayOf<FunctionType>(largest), "NA");
    EXPECT_EQ(displayOf<RefEntityType>(28), "Unknown");
    EXPECT_EQ(displayOf<RefEntityType>(40), "Unknown");
    EXPECT_EQ(displayOf<SyntaxType>(3), "NA");
    EXPECT_EQ(displayOf<SyntaxType>(largest), "NA");
}

TEST(Enumerations, HostIdentityIsTheSharedNamespaceAndTheClassName) {
    std::string const hostNamespace = "ovrin.internal.reference.property";
    EXPECT_EQ(DeprecationStatus::getOCOSNamespaceName(), hostNamespace);
    EXPECT_EQ(FunctionType::getOCOSNamespaceName(), hostNamespace);
    EXPECT_EQ(RefEntityType::getOCOSNamespaceName(), hostNamespace);
    EXPECT_EQ(SyntaxType::getOCOSNamespaceName(), hostNamespace);
    EXPECT_STREQ(DeprecationStatus::getOCOSClassName(), "DeprecationStatus");
    EXPECT_STREQ(FunctionType::getOCOSClassName(), "FunctionType");
    EXPECT_STREQ(RefEntityType::getOCOSClassName(), "RefEntityType");
    EXPECT_STREQ(SyntaxType::getOCOSClassName(), "SyntaxType");
}
