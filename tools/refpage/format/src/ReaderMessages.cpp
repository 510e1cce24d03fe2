#include "ReaderMessages.hpp"

#include <fmt/format.h>

#include <refpage/support/Escape.hpp>
#include <refpage/support/Suggestion.hpp>
#include <vector>

namespace refpage::messages {

using reference::glue::EnumerationInfo;
using reference::glue::PropertyEntry;
using reference::glue::PropertyTable;

std::string_view article(std::string_view word) {
    return !word.empty() && std::string_view("AEIOU").find(word.front()) != std::string_view::npos ? "an" : "a";
}

std::string describeRecord(PropertyTable const& table) {
    std::string_view const name = table.qualifiedName;
    std::string_view const shortName = name.substr(name.rfind('.') + 1);
    return fmt::format("{} {} record", article(shortName), shortName);
}

std::string duplicateKey(std::string_view key) {
    return "duplicate key " + refpage::quoted(key);
}

std::string unknownKey(std::string_view key, PropertyTable const& table) {
    std::string message = fmt::format("unknown key {} in {}", refpage::quoted(key), describeRecord(table));
    std::vector<std::string_view> words;
    for (PropertyEntry const& candidate : table.entries) words.push_back(candidate.word);
    if (auto const nearest = nearestWord(key, words)) message += fmt::format("; did you mean {}?", refpage::quoted(*nearest));
    return message;
}

std::string wrongType(std::string_view expected, std::string_view found) {
    return fmt::format("expected {}, found {}", expected, found);
}

std::string notAnEnumeration(EnumerationInfo const& info, std::string_view found) {
    return fmt::format("expected {} {} key or an unsigned 32-bit number, found {}", article(info.className),
                       info.className, found);
}

std::string notAnEnumerationNumber(EnumerationInfo const& info, std::string_view number, std::string_view what) {
    return fmt::format("{} is {}; expected {} {} key or an unsigned 32-bit number", number, what,
                       article(info.className), info.className);
}

std::string outOfRange(std::string_view number) {
    return fmt::format("{} is outside the unsigned 32-bit range", number);
}

std::string keyNamesNoMember(EnumerationInfo const& info, std::string_view key, std::uint32_t value) {
    std::string message = fmt::format("{} names no member of {}; stored {} ({})", refpage::quoted(key), info.className,
                                      value, info.displayText(value));
    std::vector<std::string_view> keys;
    for (auto const& member : info.members) keys.push_back(member.key);
    if (auto const nearest = nearestWord(key, keys)) message += fmt::format("; did you mean {}?", refpage::quoted(*nearest));
    return message;
}

std::string numberNamesNoMember(EnumerationInfo const& info, std::uint32_t value) {
    return fmt::format("{} names no member of {}; stored {} ({})", value, info.className, value, info.displayText(value));
}

}  // namespace refpage::messages
