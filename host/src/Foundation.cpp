// Foundation exceptions: messages in UTF-16, `what` in UTF-8, identifiers
// formed from catalog and key.
#include <ovrin/error.hpp>
#include <ovrin/foundation/except.hpp>

#include <utf8.h>

namespace foundation::core::except {

IException::~IException() = default;

char const* IException::what() const noexcept {
    try {
        if (whatText_.empty()) {
            if (auto const* user = dynamic_cast<IUserException const*>(this))
                whatText_ = user->convert_str(user->ToUstringImpl());
        }
        return whatText_.c_str();
    } catch (...) {
        return "foundation exception (its message could not be formed)";
    }
}

std::string IUserException::convert_str(std::u16string const& text) const {
    try {
        return utf8::utf16to8(text);
    } catch (utf8::exception const& e) {
        throw ovrin::HostError(std::string("convert_str: expected valid UTF-16, found text that is not (") + e.what() +
                               ")");
    }
}

std::u16string IUserException::convert_str(std::string const& text) const {
    try {
        return utf8::utf8to16(text);
    } catch (utf8::exception const& e) {
        throw ovrin::HostError(std::string("convert_str: expected valid UTF-8, found text that is not (") + e.what() +
                               ")");
    }
}

std::u16string IUserException::ToUstringImpl() const { return {}; }

std::u16string IMsgIDException::GetUnicodeMessageTxt() const { return msg::catalogMessage(GetBaseMsgIDObj()); }

std::u16string IMsgIDException::ToUstringImpl() const { return GetUnicodeMessageTxt(); }

std::string IMsgIDException::get_error_id(msg::MessageKey const& key) {
    return msg::catalogIdentifier(key.catalog, key.key);
}

}  // namespace foundation::core::except
