// Host foundation library: message-keyed exceptions. A message key names an
// entry of the host's message catalog (catalog text, key text) and carries the
// message's arguments; the catalog gives each entry an identifier and a text.
#pragma once

#include <ovrin/export.hpp>

#include <exception>
#include <string>
#include <variant>
#include <vector>

namespace foundation::core::msg {

/// One argument of a catalog message.
using MessageArgument = std::variant<long, std::string, std::u16string>;

/// A catalog entry and its arguments; the members are in the order the keys fill them.
struct OVRIN_HOST_API MessageKey {
    std::vector<MessageArgument> arguments;  ///< the message's arguments, in order
    std::string catalog;                     ///< catalog text, as "Ovrin:class"
    std::string key;                         ///< key text within the catalog, as "RequireScalar"
};

/// The identifier of a catalog entry, as "Ovrin:class:RequireScalar".
OVRIN_HOST_API std::string catalogIdentifier(std::string const& catalog, std::string const& key);
/// The catalog's text for a message with its arguments filled in, in UTF-16.
/// Throws a host error for an entry the catalog does not hold.
OVRIN_HOST_API std::u16string catalogMessage(MessageKey const& message);

}  // namespace foundation::core::msg

namespace foundation::core::except {

/// Root of the foundation's exceptions: copyable through `clone`, re-throwable
/// as its dynamic type through `rethrow`.
class OVRIN_HOST_API IException {
public:
    virtual IException* clone() const = 0;
    virtual void rethrow() const = 0;
    virtual ~IException();
    /// The message in UTF-8; valid while the exception lives.
    virtual char const* what() const noexcept;

protected:
    IException() = default;
    IException(IException const&) = default;
    IException& operator=(IException const&) = default;

private:
    mutable std::string whatText_;
};

/// An exception whose message is meant for a person.
class OVRIN_HOST_API IUserException : public IException {
public:
    /// UTF-16 to UTF-8, and back.
    virtual std::string convert_str(std::u16string const& text) const;
    virtual std::u16string convert_str(std::string const& text) const;
    /// The message in UTF-16.
    virtual std::u16string ToUstringImpl() const;
};

/// An exception identified by a catalog message.
class OVRIN_HOST_API IMsgIDException : public IUserException {
public:
    /// The identifier of the message, as `get_error_id` formed it.
    virtual std::string GetID() const = 0;
    /// The catalog's text of the message.
    virtual std::u16string GetUnicodeMessageTxt() const;
    /// The message key the exception was made from.
    virtual msg::MessageKey const& GetBaseMsgIDObj() const = 0;

    std::u16string ToUstringImpl() const override;

    /// The identifier that the foundation forms for a message key.
    static std::string get_error_id(msg::MessageKey const& key);
};

/// The exception of one message key. Its members are defined by the library
/// that throws it, for each key it throws.
template <class Key, class Base, class Extra>
class Exception;

template <class Key>
class Exception<Key, std::exception, void> : public IMsgIDException, public std::exception {
public:
    explicit Exception(Key const& key);
    Exception(Exception const& other);
    Exception& operator=(Exception const&) = delete;

    IException* clone() const override;
    [[noreturn]] void rethrow() const override;
    ~Exception() override;
    char const* what() const noexcept override;
    std::string GetID() const override;
    msg::MessageKey const& GetBaseMsgIDObj() const override;

private:
    Key key_;         ///< copy of the message key: arguments, catalog, key
    std::string id_;  ///< identifier formed from the key by `get_error_id`
};

}  // namespace foundation::core::except

namespace component_Ovrin::catalog_class {

/// "Ovrin:class" / "RequireScalar": a value had to be exactly one element. No arguments.
struct OVRIN_HOST_API key_RequireScalar : foundation::core::msg::MessageKey {
    key_RequireScalar();
};

}  // namespace component_Ovrin::catalog_class
