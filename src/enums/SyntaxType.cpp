#include <reference/property/SyntaxType.hpp>

#include "bridge/ClassIdentity.hpp"
#include "enums/KeyTable.hpp"

namespace reference::property {

namespace {

using namespace std::string_view_literals;

constexpr std::pair<std::string_view, SyntaxType::Value> keyPairs[] = {
    {"createobject"sv, SyntaxType::CreateObject},
    {"usage"sv, SyntaxType::Usage},
    {"n/a"sv, SyntaxType::NA},
};

enums::KeyTable<SyntaxType::Value> const keyTable = enums::buildKeyTable(keyPairs);

/// The value of every unknown key; stringToEnum reads it here, not through the exported getDefaultValue().
constexpr SyntaxType::Value defaultValue = SyntaxType::NA;

}  // namespace

SyntaxType::Value SyntaxType::stringToEnum(std::string_view key) noexcept {
    return enums::findKey(keyTable, key, defaultValue);
}

std::string SyntaxType::enumToString(Value value) {
    switch (value) {
        case CreateObject: return "CreateObject";
        case Usage: return "Usage";
        default: break;  // NA and every number that is no member
    }
    return "NA";
}

SyntaxType::Value SyntaxType::getDefaultValue() noexcept { return defaultValue; }

char const* SyntaxType::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }

char const* SyntaxType::getOCOSClassName() noexcept { return "SyntaxType"; }

}  // namespace reference::property
