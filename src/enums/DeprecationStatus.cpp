#include <reference/property/DeprecationStatus.hpp>

#include "bridge/ClassIdentity.hpp"
#include "enums/KeyTable.hpp"

namespace reference::property {

namespace {

using namespace std::string_view_literals;

constexpr std::pair<std::string_view, DeprecationStatus::Value> keyPairs[] = {
    {"current"sv, DeprecationStatus::Current}, {"announce"sv, DeprecationStatus::Announce},
    {"warn"sv, DeprecationStatus::Warn},       {"error"sv, DeprecationStatus::Error},
    {"delete"sv, DeprecationStatus::Delete},   {"deny"sv, DeprecationStatus::Deny},
};

enums::KeyTable<DeprecationStatus::Value> const keyTable = enums::buildKeyTable(keyPairs);

/// The value of every unknown key; stringToEnum reads it here, not through the exported getDefaultValue().
constexpr DeprecationStatus::Value defaultValue = DeprecationStatus::Current;

}  // namespace

DeprecationStatus::Value DeprecationStatus::stringToEnum(std::string_view key) noexcept {
    return enums::findKey(keyTable, key, defaultValue);
}

std::string DeprecationStatus::enumToString(Value value) {
    switch (value) {
        case Current: return "Current";
        case Announce: return "Announce";
        case Warn: return "Warn";
        case Error: return "Error";
        case Delete: return "Delete";
        case Deny: return "Deny";
    }
    return "Current";
}

DeprecationStatus::Value DeprecationStatus::getDefaultValue() noexcept { return defaultValue; }

char const* DeprecationStatus::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }

char const* DeprecationStatus::getOCOSClassName() noexcept { return "DeprecationStatus"; }

}  // namespace reference::property
