// The host's message catalog: one text per (catalog, key), with numbered
// argument places "{0}", "{1}", ... filled from the key's arguments.
#include <ovrin/error.hpp>
#include <ovrin/foundation/except.hpp>

#include <utf8.h>

#include <map>
#include <string_view>
#include <utility>

namespace foundation::core::msg {
namespace {

using Entry = std::pair<std::string_view, std::string_view>;  ///< catalog text, key text

/// The catalog, in UTF-8. Read-only after load, so any thread may read it.
std::map<Entry, std::string_view> const& catalog() {
    static std::map<Entry, std::string_view> const entries{
        {{"Ovrin:class", "RequireScalar"}, "Value must be a scalar: expected exactly one element."},
    };
    return entries;
}

std::u16string argumentText(MessageArgument const& argument) {
    if (auto const* number = std::get_if<long>(&argument)) return utf8::utf8to16(std::to_string(*number));
    if (auto const* narrow = std::get_if<std::string>(&argument)) return utf8::utf8to16(*narrow);
    return std::get<std::u16string>(argument);
}

}  // namespace

std::string catalogIdentifier(std::string const& catalogText, std::string const& key) {
    return catalogText + ":" + key;
}

std::u16string catalogMessage(MessageKey const& message) {
    auto const found = catalog().find(Entry{message.catalog, message.key});
    if (found == catalog().end())
        throw ovrin::HostError("catalogMessage: expected an entry of the message catalog, found '" +
                               catalogIdentifier(message.catalog, message.key) + "'");
    std::u16string const text = utf8::utf8to16(found->second);
    std::u16string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::size_t const close = text.find(u'}', i);
        bool const isPlace = text[i] == u'{' && close != std::u16string::npos && close > i + 1 &&
                             text.find_first_not_of(u"0123456789", i + 1) == close;
        if (!isPlace) {
            result += text[i];
            continue;
        }
        std::size_t index = 0;
        for (std::size_t d = i + 1; d < close; ++d) index = index * 10 + static_cast<std::size_t>(text[d] - u'0');
        if (index >= message.arguments.size())
            throw ovrin::HostError("catalogMessage: expected argument {" + std::to_string(index) + "} for '" +
                                   catalogIdentifier(message.catalog, message.key) + "', found " +
                                   std::to_string(message.arguments.size()) + " argument(s)");
        result += argumentText(message.arguments[index]);
        i = close;
    }
    return result;
}

}  // namespace foundation::core::msg

namespace component_Ovrin::catalog_class {

key_RequireScalar::key_RequireScalar() : MessageKey{{}, "Ovrin:class", "RequireScalar"} {}

}  // namespace component_Ovrin::catalog_class
