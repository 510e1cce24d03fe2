#include "proto/ProtoPage.hpp"

#include <utf8.h>

#include <iterator>
#include <string>

namespace bench {
namespace {

using namespace reference::property;
namespace pb = refprop::bench;

std::string utf8Of(std::u16string const& text) {
    std::string result;
    utf8::utf16to8(text.begin(), text.end(), std::back_inserter(result));
    return result;
}

template <class Strings>
void addAll(Strings* target, std::vector<std::u16string> const& texts) {
    for (auto const& text : texts) {
        target->Add(utf8Of(text));
    }
}

void fillInfo(pb::ObjectInfo* target, ObjectInfo const& info) {
    target->set_name(utf8Of(info.getName()));
    target->set_purpose(utf8Of(info.getPurpose()));
    addAll(target->mutable_values(), info.getValues());
    target->set_href(utf8Of(info.getHref()));
}

}  // namespace

pb::RefItem protoOf(RefItem const& page) {
    pb::RefItem message;
    message.set_href(utf8Of(page.getHref()));
    for (auto const& entity : page.getRefEntities()) {
        pb::RefEntity* target = message.add_ref_entities();
        target->set_ref_entity_type(entity.getRefEntityType());
        target->set_name(utf8Of(entity.getName()));
        target->set_function_type(entity.getFunctionType());
    }
    message.set_package_name(utf8Of(page.getPackageName()));
    message.set_purpose(utf8Of(page.getPurpose()));
    message.set_introduced_in(utf8Of(page.getIntroduced()));
    message.set_description(utf8Of(page.getDescription()));
    message.mutable_app_thumbnail()->set_file_ref(utf8Of(page.getAppThumbnail().getFileRef()));
    message.mutable_app_thumbnail()->set_alt(utf8Of(page.getAppThumbnail().getAlt()));
    message.set_deprecation_status(page.getDeprecationStatus());
    for (auto const& group : page.getSyntaxGroups()) {
        pb::SyntaxGroup* target = message.add_syntax_groups();
        target->set_title(utf8Of(group.getTitle()));
        target->set_syntax_type(group.getSyntaxType());
        addAll(target->mutable_syntaxes(), group.getSyntaxes());
    }
    for (auto const& group : page.getInputGroups()) {
        pb::InputGroup* target = message.add_input_groups();
        target->set_title(utf8Of(group.getTitle()));
        for (auto const& input : group.getInputs()) {
            pb::Input* item = target->add_inputs();
            item->set_syntax_type(input.getSyntaxType());
            item->set_is_name_value_pair(input.isNameValuePair());
            item->set_default_value(utf8Of(input.getDefaultValue()));
            fillInfo(item->mutable_info(), input);
        }
    }
    for (auto const& output : page.getOutputs()) {
        pb::Output* target = message.add_outputs();
        target->set_syntax_type(output.getSyntaxType());
        fillInfo(target->mutable_info(), output);
    }
    for (auto const& group : page.getClassPropertyGroups()) {
        pb::ClassPropertyGroup* target = message.add_class_property_groups();
        target->set_title(utf8Of(group.getTitle()));
        for (auto const& property : group.getClassProperties()) {
            pb::ClassProperty* item = target->add_class_properties();
            item->set_default_value(utf8Of(property.getDefaultValue()));
            fillInfo(item->mutable_info(), property);
        }
    }
    for (auto const& link : page.getSeeAlsoInfo()) {
        pb::SeeAlso* target = message.add_see_also();
        target->set_url(utf8Of(link.getUrl()));
        target->set_name(utf8Of(link.getName()));
    }
    for (auto const& example : page.getExamples()) {
        pb::Example* target = message.add_examples();
        target->set_url(utf8Of(example.getUrl()));
        target->set_open_command(utf8Of(example.getOpenCommand()));
        target->set_title(utf8Of(example.getTitle()));
    }
    for (auto const& parameter : page.getParameters()) {
        pb::Parameter* target = message.add_parameters();
        target->set_default_value(utf8Of(parameter.getDefaultValue()));
        fillInfo(target->mutable_info(), parameter);
    }
    return message;
}

}  // namespace bench
