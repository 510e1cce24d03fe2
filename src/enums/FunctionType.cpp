#include <reference/property/FunctionType.hpp>

#include "bridge/ClassIdentity.hpp"
#include "enums/KeyTable.hpp"

namespace reference::property {

namespace {

using namespace std::string_view_literals;

constexpr std::pair<std::string_view, FunctionType::Value> keyPairs[] = {
    {"simple"sv, FunctionType::Simple},
    {"constructor"sv, FunctionType::Constructor},
    {"instancemethod"sv, FunctionType::InstanceMethod},
    {"applauncher"sv, FunctionType::AppLauncher},
    {"toollauncher"sv, FunctionType::ToolLauncher},
    {"staticmethod"sv, FunctionType::StaticMethod},
    {"n/a"sv, FunctionType::NA},
};

enums::KeyTable<FunctionType::Value> const keyTable = enums::buildKeyTable(keyPairs);

/// The value of every unknown key; stringToEnum reads it here, not through the exported getDefaultValue().
constexpr FunctionType::Value defaultValue = FunctionType::NA;

}  // namespace

FunctionType::Value FunctionType::stringToEnum(std::string_view key) noexcept {
    return enums::findKey(keyTable, key, defaultValue);
}

std::string FunctionType::enumToString(Value value) {
    switch (value) {
        case Simple: return "Simple";
        case Constructor: return "Constructor";
        case InstanceMethod: return "Instance_Method";
        case AppLauncher: return "App_Launcher";
        case ToolLauncher: return "Tool_Launcher";
        case StaticMethod: return "Static_Method";
        default: break;  // NA and every number that is no member
    }
    return "NA";
}

FunctionType::Value FunctionType::getDefaultValue() noexcept { return defaultValue; }

char const* FunctionType::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }

char const* FunctionType::getOCOSClassName() noexcept { return "FunctionType"; }

}  // namespace reference::property
