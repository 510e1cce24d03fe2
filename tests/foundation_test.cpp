// The stand-in host's foundation: error identifiers, the message catalog's
// refusals, and the user exception's UTF-16 to UTF-8 conversions. The message-
// keyed exception itself is checked through the library's RequireScalar.
#include "support/HostErrors.hpp"

#include <ovrin/foundation/except.hpp>

#include <gtest/gtest.h>

#include <string>

namespace {

namespace msg = foundation::core::msg;
namespace except = foundation::core::except;
using testvalues::hostErrorOf;

/// An entry the catalog does not hold.
struct MissingKey : msg::MessageKey {
    MissingKey() : MessageKey{{}, "Test:nowhere", "Missing"} {}
};

/// A user exception with a fixed message and no catalog entry.
class PlainUserError : public except::IUserException {
public:
    explicit PlainUserError(std::u16string text) : text_(std::move(text)) {}
    IException* clone() const override { return new PlainUserError(*this); }
    void rethrow() const override { throw *this; }
    std::u16string ToUstringImpl() const override { return text_; }

private:
    std::u16string text_;
};

TEST(MessageCatalog, IdentifiersJoinCatalogAndKeyAndEntriesItLacksOrArgumentsItTakesNotAreHostErrors) {
    component_Ovrin::catalog_class::key_RequireScalar withArgument;
    EXPECT_EQ(except::IMsgIDException::get_error_id(withArgument), "Ovrin:class:RequireScalar");
    EXPECT_EQ(msg::catalogIdentifier("Ovrin:class", "RequireScalar"), "Ovrin:class:RequireScalar");
    EXPECT_EQ(hostErrorOf([] { msg::catalogMessage(MissingKey()); }),
              "catalogMessage: expected an entry of the message catalog, found 'Test:nowhere:Missing'");
    withArgument.arguments.emplace_back(7L);
    EXPECT_EQ(hostErrorOf([&] { msg::catalogMessage(withArgument); }),
              "catalogMessage: expected 0 argument(s) for 'Ovrin:class:RequireScalar', found 1");
}

TEST(UserException, WhatIsTheUtf8FormOfTheUnicodeMessageOrAFixedTextWhenItCannotBeFormed) {
    EXPECT_STREQ(PlainUserError(u"caf\u00e9 \U0001F600").what(), "caf\xc3\xa9 \xf0\x9f\x98\x80");
    EXPECT_STREQ(PlainUserError(std::u16string(1, char16_t(0xDC00))).what(),
                 "foundation exception (its message could not be formed)");
}

TEST(UserException, ConvertStrRoundTripsValidTextAndRefusesInvalidText) {
    PlainUserError const error(u"");
    std::u16string const text = u"\u00e9\u4e2d\U0001F600";
    EXPECT_EQ(error.convert_str(error.convert_str(text)), text);
    EXPECT_EQ(error.convert_str(std::string("plain")), u"plain");
    EXPECT_THROW(error.convert_str(std::u16string(1, char16_t(0xD800))), ovrin::HostError);
    EXPECT_THROW(error.convert_str(std::string("\xff")), ovrin::HostError);
}

}  // namespace
