#include <reference/property/RefEntityType.hpp>

#include "bridge/ClassIdentity.hpp"
#include "enums/KeyTable.hpp"

namespace reference::property {

namespace {

using namespace std::string_view_literals;

/// The empty key names Unknown, so an empty type text and an unknown one agree.
constexpr std::pair<std::string_view, RefEntityType::Value> keyPairs[] = {
    {"function"sv, RefEntityType::Function},
    {"class"sv, RefEntityType::Class},
    {"method"sv, RefEntityType::Method},
    {"constructor"sv, RefEntityType::Constructor},
    {"property"sv, RefEntityType::Property},
    {"properties"sv, RefEntityType::Properties},
    {"object"sv, RefEntityType::Object},
    {"sysobj"sv, RefEntityType::SysObj},
    {"package"sv, RefEntityType::Package},
    {"quillpadtask"sv, RefEntityType::QuillpadTask},
    {"settings"sv, RefEntityType::Settings},
    {"keyword"sv, RefEntityType::Keyword},
    {"block"sv, RefEntityType::Block},
    {"mdlcheck"sv, RefEntityType::ModelCheck},
    {"mdlguideline"sv, RefEntityType::ModelGuideline},
    {"reportgen"sv, RefEntityType::ReportGen},
    {"corvanelanguage"sv, RefEntityType::CorvaneLanguage},
    {"corvaneblock"sv, RefEntityType::CorvaneBlock},
    {"tessark"sv, RefEntityType::Tessark},
    {"configparam"sv, RefEntityType::ConfigParam},
    {"runtimecheck"sv, RefEntityType::RuntimeCheck},
    {"analysisopt"sv, RefEntityType::AnalysisOpt},
    {"c"sv, RefEntityType::C},
    {"cpp"sv, RefEntityType::Cpp},
    {"app"sv, RefEntityType::App},
    {"tool"sv, RefEntityType::Tool},
    {"scene"sv, RefEntityType::Scene},
    {""sv, RefEntityType::Unknown},
};

enums::KeyTable<RefEntityType::Value> const keyTable = enums::buildKeyTable(keyPairs);

/// The value of every unknown key; stringToEnum reads it here, not through the exported getDefaultValue().
constexpr RefEntityType::Value defaultValue = RefEntityType::Unknown;

}  // namespace

RefEntityType::Value RefEntityType::stringToEnum(std::string_view key) noexcept {
    return enums::findKey(keyTable, key, defaultValue);
}

std::string RefEntityType::enumToString(Value value) {
    switch (value) {
        case Function: return "Function";
        case Class: return "Class";
        case Method: return "Method";
        case Constructor: return "Constructor";
        case Property: return "Property";
        case Properties: return "Properties";
        case Object: return "Object";
        case SysObj: return "Sys_Obj";
        case Package: return "Package";
        case QuillpadTask: return "Quillpad_Task";
        case Settings: return "Settings";
        case Keyword: return "Keyword";
        case Block: return "Block";
        case ModelCheck: return "Model_Check";
        case ModelGuideline: return "Model_Guideline";
        case ReportGen: return "Report_Gen";
        case CorvaneLanguage: return "Corvane_Language";
        case CorvaneBlock: return "Corvane_Block";
        case Tessark: return "Tessark";
        case ConfigParam: return "Config_Param";
        case RuntimeCheck: return "Runtime_Check";
        case AnalysisOpt: return "Analysis_Opt";
        case C: return "C";
        case Cpp: return "Cpp";
        case App: return "App";
        case Tool: return "Tool";
        case Scene: return "Scene";
        default: break;  // Unknown and every number that is no member
    }
    return "Unknown";
}

RefEntityType::Value RefEntityType::getDefaultValue() noexcept { return defaultValue; }

char const* RefEntityType::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }

char const* RefEntityType::getOCOSClassName() noexcept { return "RefEntityType"; }

}  // namespace reference::property
