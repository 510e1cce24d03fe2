// The stand-in host's foundation: message keys, the catalog, error
// identifiers and the exception bases. The exception template's members are
// defined by the library that throws each key; this file defines them for its
// own test-only keys, the way a library would.
#include <ovrin/error.hpp>
#include <ovrin/foundation/except.hpp>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

namespace msg = foundation::core::msg;
namespace except = foundation::core::except;

/// The catalog entry that the scalar requirement uses, through a key type of this test's own.
struct ScalarKey : msg::MessageKey {
    ScalarKey() : MessageKey{{}, "Ovrin:class", "RequireScalar"} {}
};

/// An entry the catalog does not hold.
struct MissingKey : msg::MessageKey {
    MissingKey() : MessageKey{{}, "Test:nowhere", "Missing"} {}
};

}  // namespace

namespace foundation::core::except {

template <class Key>
Exception<Key, std::exception, void>::Exception(Key const& key) : key_(key), id_(get_error_id(key)) {}
template <class Key>
Exception<Key, std::exception, void>::Exception(Exception const& other)
    : IMsgIDException(other), std::exception(other), key_(other.key_), id_(other.id_) {}
template <class Key>
IException* Exception<Key, std::exception, void>::clone() const {
    return new Exception(*this);
}
template <class Key>
void Exception<Key, std::exception, void>::rethrow() const {
    throw Exception(*this);
}
template <class Key>
Exception<Key, std::exception, void>::~Exception() = default;
template <class Key>
char const* Exception<Key, std::exception, void>::what() const noexcept {
    return IException::what();
}
template <class Key>
std::string Exception<Key, std::exception, void>::GetID() const {
    return id_;
}
template <class Key>
msg::MessageKey const& Exception<Key, std::exception, void>::GetBaseMsgIDObj() const {
    return key_;
}

}  // namespace foundation::core::except

namespace {

using ScalarError = except::Exception<ScalarKey, std::exception, void>;
using MissingError = except::Exception<MissingKey, std::exception, void>;

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

TEST(MessageKey, RequireScalarKeyFillsNoArgumentsThenCatalogThenKey) {
    component_Ovrin::catalog_class::key_RequireScalar const key;
    EXPECT_TRUE(key.arguments.empty());
    EXPECT_EQ(key.catalog, "Ovrin:class");
    EXPECT_EQ(key.key, "RequireScalar");
}

TEST(MessageKey, ErrorIdentifierJoinsCatalogAndKeyWithAColon) {
    EXPECT_EQ(except::IMsgIDException::get_error_id(component_Ovrin::catalog_class::key_RequireScalar()),
              "Ovrin:class:RequireScalar");
    EXPECT_EQ(msg::catalogIdentifier("Ovrin:class", "RequireScalar"), "Ovrin:class:RequireScalar");
}

TEST(MessageCatalog, HoldsTheScalarRequirementText) {
    EXPECT_EQ(msg::catalogMessage(component_Ovrin::catalog_class::key_RequireScalar()),
              u"Value must be a scalar: expected exactly one element.");
}

TEST(MessageCatalog, UnknownEntryIsAHostErrorNamingIt) {
    try {
        msg::catalogMessage(MissingKey());
        FAIL() << "no error";
    } catch (ovrin::HostError const& e) {
        EXPECT_STREQ(e.what(), "catalogMessage: expected an entry of the message catalog, found 'Test:nowhere:Missing'");
    }
}

TEST(MessageCatalog, ArgumentsTheEntryDoesNotTakeAreAHostError) {
    ScalarKey key;
    key.arguments.emplace_back(7L);
    try {
        msg::catalogMessage(key);
        FAIL() << "no error";
    } catch (ovrin::HostError const& e) {
        EXPECT_STREQ(e.what(), "catalogMessage: expected 0 argument(s) for 'Ovrin:class:RequireScalar', found 1");
    }
}

TEST(MsgIDException, IdentifierKeyAndMessageComeFromTheCatalogEntry) {
    ScalarError const error{ScalarKey()};
    EXPECT_EQ(error.GetID(), "Ovrin:class:RequireScalar");
    EXPECT_EQ(error.GetBaseMsgIDObj().key, "RequireScalar");
    EXPECT_EQ(error.GetUnicodeMessageTxt(), u"Value must be a scalar: expected exactly one element.");
    EXPECT_EQ(error.ToUstringImpl(), error.GetUnicodeMessageTxt());
    EXPECT_STREQ(error.what(), "Value must be a scalar: expected exactly one element.");
}

TEST(MsgIDException, WhatStaysValidAndEqualAcrossCalls) {
    ScalarError const error{ScalarKey()};
    char const* const first = error.what();
    EXPECT_EQ(error.what(), first);
}

TEST(MsgIDException, WhatOfAnEntryTheCatalogLacksIsAFixedTextNotACrash) {
    MissingError const error{MissingKey()};
    EXPECT_EQ(error.GetID(), "Test:nowhere:Missing");
    EXPECT_STREQ(error.what(), "foundation exception (its message could not be formed)");
    EXPECT_THROW(error.GetUnicodeMessageTxt(), ovrin::HostError);
}

TEST(MsgIDException, CloneAndRethrowKeepTheDynamicType) {
    ScalarError const error{ScalarKey()};
    std::unique_ptr<except::IException> const copy(error.clone());
    EXPECT_STREQ(copy->what(), error.what());
    try {
        copy->rethrow();
        FAIL() << "no exception";
    } catch (ScalarError const& e) {
        EXPECT_EQ(e.GetID(), "Ovrin:class:RequireScalar");
    }
    try {
        error.rethrow();
    } catch (std::exception const& e) {  // catchable as a standard exception too
        EXPECT_STREQ(e.what(), "Value must be a scalar: expected exactly one element.");
    }
}

TEST(UserException, WhatIsTheUtf8FormOfTheUnicodeMessage) {
    PlainUserError const error(u"caf\u00e9 \U0001F600");
    EXPECT_STREQ(error.what(), "caf\xc3\xa9 \xf0\x9f\x98\x80");
}

TEST(UserException, ConvertStrRoundTripsBothWays) {
    PlainUserError const error(u"");
    std::u16string const text = u"\u00e9\u4e2d\U0001F600";
    EXPECT_EQ(error.convert_str(error.convert_str(text)), text);
    EXPECT_EQ(error.convert_str(std::string("plain")), u"plain");
}

TEST(UserException, InvalidTextIsAHostError) {
    PlainUserError const error(u"");
    EXPECT_THROW(error.convert_str(std::u16string(1, char16_t(0xD800))), ovrin::HostError);
    EXPECT_THROW(error.convert_str(std::string("\xff")), ovrin::HostError);
}

TEST(UserException, UnformableMessageGivesTheFixedWhatText) {
    PlainUserError const error(std::u16string(1, char16_t(0xDC00)));
    EXPECT_STREQ(error.what(), "foundation exception (its message could not be formed)");
}

}  // namespace
