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

}  // namespace

SyntaxType::Value SyntaxType::stringToEnum(std::string_view key) noexcept {
    return enums::findKey(keyTable, key, getDefaultValue());
}

std::string SyntaxType::enumToString(Value value) {
    switch (value) {
        case CreateObject: return "CreateObject";
        case Usage: return "Usage";
        default: break;  // NA and every number that is no member
    }
    return "NA";
}

SyntaxType::Value SyntaxType::getDefaultValue() noexcept { return NA; }

char const* SyntaxType::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }

char const* SyntaxType::getOCOSClassName() noexcept { return "SyntaxType"; }

}  // namespace reference::property
