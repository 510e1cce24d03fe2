#include <initializer_list>
#include <reference/property/AppThumbnail.hpp>
#include <reference/property/ClassProperty.hpp>
#include <reference/property/ClassPropertyGroup.hpp>
#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/Example.hpp>
#include <reference/property/FunctionType.hpp>
#include <reference/property/Input.hpp>
#include <reference/property/InputGroup.hpp>
#include <reference/property/Output.hpp>
#include <reference/property/Parameter.hpp>
#include <reference/property/RefEntity.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/RefItem.hpp>
#include <reference/property/SeeAlso.hpp>
#include <reference/property/SyntaxGroup.hpp>
#include <reference/property/SyntaxType.hpp>
#include <string>

#include "HostClassName.hpp"
#include "PropertyEntries.hpp"

namespace reference::glue {

namespace {

using namespace reference::property;
using namespace entries;

/// RefItem declares no identity of its own; the host knows it under this name, and only here.
constexpr std::string_view refItemClassName = "ovrin.internal.reference.property.RefItem";

template <class Record>
PropertyTable makeTable(std::string qualifiedName, std::vector<PropertyEntry> entries) {
    PropertyTable table;
    table.identity = ocos::internal::makeInterned(qualifiedName);
    table.qualifiedName = std::move(qualifiedName);
    table.nativeType = &typeid(Record);
    table.dispose = [](void* record) noexcept { delete static_cast<Record*>(record); };
    table.makeDefault = []() -> void* { return new Record; };
    table.entries = std::move(entries);
    return table;
}

/// The table of a record class that names its own host class.
template <class Record>
PropertyTable makeTable(std::vector<PropertyEntry> entries) {
    return makeTable<Record>(hostClassName<Record>(), std::move(entries));
}

/// Name, Purpose, Values and Href, which every kind of ObjectInfo shares, then the kind's own entries.
template <class Record>
std::vector<PropertyEntry> withObjectInfo(std::initializer_list<PropertyEntry> own) {
    std::vector<PropertyEntry> entries{
        stringProperty<Record, &Record::getNameProperty, &Record::setNameProperty>("Name"),
        stringProperty<Record, &Record::getPurposeProperty, &Record::setPurposeProperty>("Purpose"),
        stringListProperty<Record, &Record::getValuesProperty, &Record::setValuesProperty>("Values"),
        stringProperty<Record, &Record::getHrefProperty, &Record::setHrefProperty>("Href"),
    };
    entries.insert(entries.end(), own);
    return entries;
}

}  // namespace

template <>
PropertyTable const& tableOf<AppThumbnail>() {
    static PropertyTable const table = makeTable<AppThumbnail>(
        {stringProperty<AppThumbnail, &AppThumbnail::getFileRefProperty, &AppThumbnail::setFileRefProperty>("FileRef"),
         stringProperty<AppThumbnail, &AppThumbnail::getAltProperty, &AppThumbnail::setAltProperty>("Alt")});
    return table;
}

template <>
PropertyTable const& tableOf<Example>() {
    static PropertyTable const table = makeTable<Example>(
        {stringProperty<Example, &Example::getTitleProperty, &Example::setTitleProperty>("Title"),
         stringProperty<Example, &Example::getUrlProperty, &Example::setUrlProperty>("Url"),
         stringProperty<Example, &Example::getOpenCommandProperty, &Example::setOpenCommandProperty>("OpenCommand")});
    return table;
}

template <>
PropertyTable const& tableOf<SeeAlso>() {
    static PropertyTable const table =
        makeTable<SeeAlso>({stringProperty<SeeAlso, &SeeAlso::getNameProperty, &SeeAlso::setNameProperty>("Name"),
                            stringProperty<SeeAlso, &SeeAlso::getUrlProperty, &SeeAlso::setUrlProperty>("Url")});
    return table;
}

template <>
PropertyTable const& tableOf<Input>() {
    static PropertyTable const table = makeTable<Input>(withObjectInfo<Input>(
        {enumProperty<Input, SyntaxType, &Input::getSyntaxTypeProperty, &Input::setSyntaxTypeProperty>("SyntaxType"),
         stringProperty<Input, &Input::getDefaultValueProperty, &Input::setDefaultValueProperty>("DefaultValue"),
         boolProperty<Input, &Input::getIsNameValuePairProperty, &Input::setIsNameValuePairProperty>(
             "IsNameValuePair")}));
    return table;
}

template <>
PropertyTable const& tableOf<Output>() {
    static PropertyTable const table = makeTable<Output>(withObjectInfo<Output>(
        {enumProperty<Output, SyntaxType, &Output::getSyntaxTypeProperty, &Output::setSyntaxTypeProperty>(
            "SyntaxType")}));
    return table;
}

template <>
PropertyTable const& tableOf<Parameter>() {
    static PropertyTable const table = makeTable<Parameter>(withObjectInfo<Parameter>(
        {stringProperty<Parameter, &Parameter::getDefaultValueProperty, &Parameter::setDefaultValueProperty>(
            "DefaultValue")}));
    return table;
}

template <>
PropertyTable const& tableOf<ClassProperty>() {
    static PropertyTable const table = makeTable<ClassProperty>(
        withObjectInfo<ClassProperty>({stringProperty<ClassProperty, &ClassProperty::getDefaultValueProperty,
                                                      &ClassProperty::setDefaultValueProperty>("DefaultValue")}));
    return table;
}

template <>
PropertyTable const& tableOf<RefEntity>() {
    static PropertyTable const table = makeTable<RefEntity>(
        {stringProperty<RefEntity, &RefEntity::getNameProperty, &RefEntity::setNameProperty>("Name"),
         enumProperty<RefEntity, RefEntityType, &RefEntity::getRefEntityTypeProperty,
                      &RefEntity::setRefEntityTypeProperty>("RefEntityType"),
         enumProperty<RefEntity, FunctionType, &RefEntity::getFunctionTypeProperty,
                      &RefEntity::setFunctionTypeProperty>("FunctionType")});
    return table;
}

template <>
PropertyTable const& tableOf<SyntaxGroup>() {
    static PropertyTable const table = makeTable<SyntaxGroup>(
        {stringProperty<SyntaxGroup, &SyntaxGroup::getTitleProperty, &SyntaxGroup::setTitleProperty>("Title"),
         enumProperty<SyntaxGroup, SyntaxType, &SyntaxGroup::getSyntaxTypeProperty,
                      &SyntaxGroup::setSyntaxTypeProperty>("SyntaxType"),
         stringListProperty<SyntaxGroup, &SyntaxGroup::getSyntaxesProperty, &SyntaxGroup::setSyntaxesProperty>(
             "Syntaxes")});
    return table;
}

template <>
PropertyTable const& tableOf<InputGroup>() {
    static PropertyTable const table = makeTable<InputGroup>(
        {stringProperty<InputGroup, &InputGroup::getTitleProperty, &InputGroup::setTitleProperty>("Title"),
         objectArrayProperty<InputGroup, Input, &InputGroup::getInputsProperty, &InputGroup::setInputsProperty>(
             "Inputs")});
    return table;
}

template <>
PropertyTable const& tableOf<ClassPropertyGroup>() {
    static PropertyTable const table = makeTable<ClassPropertyGroup>(
        {stringProperty<ClassPropertyGroup, &ClassPropertyGroup::getTitleProperty,
                        &ClassPropertyGroup::setTitleProperty>("Title"),
         objectArrayProperty<ClassPropertyGroup, ClassProperty, &ClassPropertyGroup::getPropertiesProperty,
                             &ClassPropertyGroup::setPropertiesProperty>("Properties")});
    return table;
}

template <>
PropertyTable const& tableOf<RefItem>() {
    static PropertyTable const table = makeTable<RefItem>(
        std::string(refItemClassName),
        {stringProperty<RefItem, &RefItem::getHrefProperty, &RefItem::setHrefProperty>("Href"),
         objectArrayProperty<RefItem, RefEntity, &RefItem::getRefEntitiesProperty, &RefItem::setRefEntitiesProperty>(
             "RefEntities"),
         stringProperty<RefItem, &RefItem::getPackageNameProperty, &RefItem::setPackageNameProperty>("PackageName"),
         stringProperty<RefItem, &RefItem::getPurposeProperty, &RefItem::setPurposeProperty>("Purpose"),
         stringProperty<RefItem, &RefItem::getIntroducedInProperty, &RefItem::setIntroducedInProperty>("IntroducedIn"),
         stringProperty<RefItem, &RefItem::getDescriptionProperty, &RefItem::setDescriptionProperty>("Description"),
         recordProperty<RefItem, AppThumbnail, &RefItem::getAppThumbnailProperty, &RefItem::setAppThumbnailProperty>(
             "AppThumbnail"),
         enumProperty<RefItem, DeprecationStatus, &RefItem::getDeprecationStatusProperty,
                      &RefItem::setDeprecationStatusProperty>("DeprecationStatus"),
         objectArrayProperty<RefItem, SyntaxGroup, &RefItem::getSyntaxGroupsProperty, &RefItem::setSyntaxGroupProperty>(
             "SyntaxGroups"),
         objectArrayProperty<RefItem, InputGroup, &RefItem::getInputGroupsProperty, &RefItem::setInputGroupsProperty>(
             "InputGroups"),
         objectArrayProperty<RefItem, Output, &RefItem::getOutputsProperty, &RefItem::setOutputsProperty>("Outputs"),
         objectArrayProperty<RefItem, ClassPropertyGroup, &RefItem::getClassPropertyGroupsProperty,
                             &RefItem::setClassPropertyGroupsProperty>("ClassPropertyGroups"),
         objectArrayProperty<RefItem, SeeAlso, &RefItem::getSeeAlsoProperty, &RefItem::setSeeAlsoProperty>("SeeAlso"),
         objectArrayProperty<RefItem, Example, &RefItem::getExamplesProperty, &RefItem::setExamplesProperty>(
             "Examples"),
         objectArrayProperty<RefItem, Parameter, &RefItem::getParametersProperty, &RefItem::setParametersProperty>(
             "Parameters")});
    return table;
}

std::vector<PropertyTable const*> const& allTables() {
    static std::vector<PropertyTable const*> const tables{
        &tableOf<AppThumbnail>(), &tableOf<ClassProperty>(), &tableOf<ClassPropertyGroup>(),
        &tableOf<Example>(),      &tableOf<Input>(),         &tableOf<InputGroup>(),
        &tableOf<Output>(),       &tableOf<Parameter>(),     &tableOf<RefEntity>(),
        &tableOf<RefItem>(),      &tableOf<SeeAlso>(),       &tableOf<SyntaxGroup>(),
    };
    return tables;
}

}  // namespace reference::glue
