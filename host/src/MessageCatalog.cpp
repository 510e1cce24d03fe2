// The host's message catalog: one text per (catalog, key), each taking a fixed
// number of arguments.
#include <ovrin/error.hpp>
#include <ovrin/foundation/except.hpp>

#include <utf8.h>

#include <map>
#include <string_view>
#include <utility>

namespace foundation::core::msg {
namespace {

using Entry = std::pair<std::string_view, std::string_view>;  ///< catalog text, key text

struct Message {
    std::string_view text;          ///< UTF-8
    std::size_t argumentCount = 0;  ///< arguments the message takes
};

/// The catalog. Read-only after its first use, so any thread may read it.
std::map<Entry, Message> const& catalog() {
    static std::map<Entry, Message> const entries{
        {{"Ovrin:class", "RequireScalar"}, {"Value must be a scalar: expected exactly one element.", 0}},
    };
    return entries;
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
    if (message.arguments.size() != found->second.argumentCount)
        throw ovrin::HostError("catalogMessage: expected " + std::to_string(found->second.argumentCount) +
                               " argument(s) for '" + catalogIdentifier(message.catalog, message.key) + "', found " +
                               std::to_string(message.arguments.size()));
    return utf8::utf8to16(found->second.text);
}

}  // namespace foundation::core::msg

namespace component_Ovrin::catalog_class {

key_RequireScalar::key_RequireScalar() : MessageKey{{}, "Ovrin:class", "RequireScalar"} {}

}  // namespace component_Ovrin::catalog_class
