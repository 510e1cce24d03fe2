// The native side of a page written in the page format, field by field through
// the native getters; the host getters' version is PageWriter's recordToJson.
#include <reference/property/RefItem.hpp>
#include <refpage/PageWriter.hpp>
#include <refpage/Utf.hpp>

namespace refpage {

namespace {

using namespace reference::property;

Json text(std::u16string const& value) {
    return toUtf8(value);
}

Json texts(std::vector<std::u16string> const& values) {
    Json list = Json::array();
    for (auto const& value : values) list.push_back(toUtf8(value));
    return list;
}

template <class Record>
Json records(std::vector<Record> const& values);

void objectInfo(Json& json, ObjectInfo const& info) {
    json["Name"] = text(info.getName());
    json["Purpose"] = text(info.getPurpose());
    json["Values"] = texts(info.getValues());
    json["Href"] = text(info.getHref());
}

Json toJson(RefEntity const& entity) {
    return Json{{"Name", text(entity.getName())},
                {"RefEntityType", static_cast<std::uint32_t>(entity.getRefEntityType())},
                {"FunctionType", static_cast<std::uint32_t>(entity.getFunctionType())}};
}

Json toJson(AppThumbnail const& thumbnail) {
    return Json{{"FileRef", text(thumbnail.getFileRef())}, {"Alt", text(thumbnail.getAlt())}};
}

Json toJson(SyntaxGroup const& group) {
    return Json{{"Title", text(group.getTitle())},
                {"SyntaxType", static_cast<std::uint32_t>(group.getSyntaxType())},
                {"Syntaxes", texts(group.getSyntaxes())}};
}

Json toJson(Input const& input) {
    Json json = Json::object();
    objectInfo(json, input);
    json["SyntaxType"] = static_cast<std::uint32_t>(input.getSyntaxType());
    json["DefaultValue"] = text(input.getDefaultValue());
    json["IsNameValuePair"] = input.isNameValuePair();
    return json;
}

Json toJson(InputGroup const& group) {
    return Json{{"Title", text(group.getTitle())}, {"Inputs", records(group.getInputs())}};
}

Json toJson(Output const& output) {
    Json json = Json::object();
    objectInfo(json, output);
    json["SyntaxType"] = static_cast<std::uint32_t>(output.getSyntaxType());
    return json;
}

template <class Record>
Json withDefaultValue(Record const& record) {
    Json json = Json::object();
    objectInfo(json, record);
    json["DefaultValue"] = text(record.getDefaultValue());
    return json;
}

Json toJson(ClassProperty const& property) {
    return withDefaultValue(property);
}
Json toJson(Parameter const& parameter) {
    return withDefaultValue(parameter);
}

Json toJson(ClassPropertyGroup const& group) {
    return Json{{"Title", text(group.getTitle())}, {"Properties", records(group.getClassProperties())}};
}

Json toJson(SeeAlso const& link) {
    return Json{{"Name", text(link.getName())}, {"Url", text(link.getUrl())}};
}

Json toJson(Example const& example) {
    return Json{{"Title", text(example.getTitle())},
                {"Url", text(example.getUrl())},
                {"OpenCommand", text(example.getOpenCommand())}};
}

template <class Record>
Json records(std::vector<Record> const& values) {
    Json list = Json::array();
    for (auto const& value : values) list.push_back(toJson(value));
    return list;
}

}  // namespace

Json nativePageToJson(RefItem const& page) {
    Json json = Json::object();
    json["Href"] = text(page.getHref());
    json["RefEntities"] = records(page.getRefEntities());
    json["PackageName"] = text(page.getPackageName());
    json["Purpose"] = text(page.getPurpose());
    json["IntroducedIn"] = text(page.getIntroduced());
    json["Description"] = text(page.getDescription());
    json["AppThumbnail"] = toJson(page.getAppThumbnail());
    json["DeprecationStatus"] = static_cast<std::uint32_t>(page.getDeprecationStatus());
    json["SyntaxGroups"] = records(page.getSyntaxGroups());
    json["InputGroups"] = records(page.getInputGroups());
    json["Outputs"] = records(page.getOutputs());
    json["ClassPropertyGroups"] = records(page.getClassPropertyGroups());
    json["SeeAlso"] = records(page.getSeeAlsoInfo());
    json["Examples"] = records(page.getExamples());
    json["Parameters"] = records(page.getParameters());
    return json;
}

}  // namespace refpage
