#include "RecordGenerator.hpp"

namespace refprop::fuzz {

namespace {

/// Sets a string property from a generated text.
template <class Record>
void setText(Record& record, void (Record::*setter)(std::u16string const*), RecordGenerator& generator) {
    std::u16string const value = generator.text();
    (record.*setter)(&value);
}

}  // namespace

HostArrayPtr RecordGenerator::textList() {
    std::vector<std::u16string> texts(input_.choose(maxListElements + 1));
    for (std::u16string& text : texts) text = this->text();
    return stringArray(texts);
}

void RecordGenerator::fillObjectInfo(rp::ObjectInfo& info) {
    setText(info, &rp::ObjectInfo::setNameProperty, *this);
    setText(info, &rp::ObjectInfo::setPurposeProperty, *this);
    info.setValuesProperty(textList().get());
    setText(info, &rp::ObjectInfo::setHrefProperty, *this);
}

rp::RefEntity RecordGenerator::refEntity() {
    rp::RefEntity entity;
    entity.setRefEntityTypeProperty(enumValue<rp::RefEntityType>().get());
    setText(entity, &rp::RefEntity::setNameProperty, *this);
    entity.setFunctionTypeProperty(enumValue<rp::FunctionType>().get());
    return entity;
}

rp::AppThumbnail RecordGenerator::appThumbnail() {
    rp::AppThumbnail thumbnail;
    setText(thumbnail, &rp::AppThumbnail::setFileRefProperty, *this);
    setText(thumbnail, &rp::AppThumbnail::setAltProperty, *this);
    return thumbnail;
}

rp::SyntaxGroup RecordGenerator::syntaxGroup() {
    rp::SyntaxGroup group;
    setText(group, &rp::SyntaxGroup::setTitleProperty, *this);
    group.setSyntaxTypeProperty(enumValue<rp::SyntaxType>().get());
    group.setSyntaxesProperty(textList().get());
    return group;
}

rp::Input RecordGenerator::input() {
    rp::Input record;
    fillObjectInfo(record);
    record.setSyntaxTypeProperty(enumValue<rp::SyntaxType>().get());
    setText(record, &rp::Input::setDefaultValueProperty, *this);
    record.setIsNameValuePairProperty(input_.flag());
    return record;
}

rp::InputGroup RecordGenerator::inputGroup() {
    rp::InputGroup group;
    setText(group, &rp::InputGroup::setTitleProperty, *this);
    group.setInputsProperty(objectArray(makeList<rp::Input>()).get());
    return group;
}

rp::Output RecordGenerator::output() {
    rp::Output record;
    fillObjectInfo(record);
    record.setSyntaxTypeProperty(enumValue<rp::SyntaxType>().get());
    return record;
}

rp::ClassProperty RecordGenerator::classProperty() {
    rp::ClassProperty record;
    fillObjectInfo(record);
    setText(record, &rp::ClassProperty::setDefaultValueProperty, *this);
    return record;
}

rp::ClassPropertyGroup RecordGenerator::classPropertyGroup() {
    rp::ClassPropertyGroup group;
    setText(group, &rp::ClassPropertyGroup::setTitleProperty, *this);
    group.setPropertiesProperty(objectArray(makeList<rp::ClassProperty>()).get());
    return group;
}

rp::SeeAlso RecordGenerator::seeAlso() {
    rp::SeeAlso record;
    setText(record, &rp::SeeAlso::setUrlProperty, *this);
    setText(record, &rp::SeeAlso::setNameProperty, *this);
    return record;
}

rp::Example RecordGenerator::example() {
    rp::Example record;
    setText(record, &rp::Example::setUrlProperty, *this);
    setText(record, &rp::Example::setOpenCommandProperty, *this);
    setText(record, &rp::Example::setTitleProperty, *this);
    return record;
}

rp::Parameter RecordGenerator::parameter() {
    rp::Parameter record;
    fillObjectInfo(record);
    setText(record, &rp::Parameter::setDefaultValueProperty, *this);
    return record;
}

}  // namespace refprop::fuzz
