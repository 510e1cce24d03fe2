#include <reference/property/RefItem.hpp>

#include "bridge/CopyInPlace.hpp"
#include "bridge/EnumProperty.hpp"
#include "bridge/ObjectArray.hpp"
#include "records/TextEquality.hpp"

#include <reference/utils/Properties.hpp>

namespace reference::property {

std::u16string const& RefItem::getHref() const { return href; }
std::vector<RefEntity> const& RefItem::getRefEntities() const { return refEntities; }
std::u16string const& RefItem::getPackageName() const { return packageName; }
std::u16string const& RefItem::getPurpose() const { return purpose; }
std::u16string const& RefItem::getIntroduced() const { return introducedIn; }
std::u16string const& RefItem::getDescription() const { return description; }
AppThumbnail const& RefItem::getAppThumbnail() const { return appThumbnail; }
DeprecationStatus::Value RefItem::getDeprecationStatus() const { return deprecationStatus; }
std::vector<SyntaxGroup> const& RefItem::getSyntaxGroups() const { return syntaxGroups; }
std::vector<InputGroup> const& RefItem::getInputGroups() const { return inputGroups; }
std::vector<Output> const& RefItem::getOutputs() const { return outputs; }
std::vector<ClassPropertyGroup> const& RefItem::getClassPropertyGroups() const { return classPropertyGroups; }
std::vector<SeeAlso> const& RefItem::getSeeAlsoInfo() const { return seeAlso; }
std::vector<Example> const& RefItem::getExamples() const { return examples; }
std::vector<Parameter> const& RefItem::getParameters() const { return parameters; }

std::u16string const& RefItem::getHrefProperty() const { return href; }
void RefItem::setHrefProperty(std::u16string const* value) { utils::setStringProperty(href, value); }
std::u16string const& RefItem::getPackageNameProperty() const { return packageName; }
void RefItem::setPackageNameProperty(std::u16string const* value) { utils::setStringProperty(packageName, value); }
std::u16string const& RefItem::getPurposeProperty() const { return purpose; }
void RefItem::setPurposeProperty(std::u16string const* value) { utils::setStringProperty(purpose, value); }
std::u16string const& RefItem::getIntroducedInProperty() const { return introducedIn; }
void RefItem::setIntroducedInProperty(std::u16string const* value) { utils::setStringProperty(introducedIn, value); }
std::u16string const& RefItem::getDescriptionProperty() const { return description; }
void RefItem::setDescriptionProperty(std::u16string const* value) { utils::setStringProperty(description, value); }

oxArray_tag const* RefItem::getDeprecationStatusProperty() const {
    return bridge::accessEnumCache<DeprecationStatus>(deprecationStatusCache, deprecationStatus);
}
void RefItem::setDeprecationStatusProperty(oxArray_tag const* value) {
    bridge::setEnumAndCache<DeprecationStatus>(value, deprecationStatusCache, deprecationStatus);
}

oxArray_tag const* RefItem::getAppThumbnailProperty() const {
    return bridge::accessObjectCache(appThumbnailCache, appThumbnail, bridge::recordWriter<AppThumbnail>());
}
void RefItem::setAppThumbnailProperty(oxArray_tag const* value) {
    bridge::setObjectAndCache<AppThumbnail>(value, appThumbnailCache, appThumbnail,
                                            bridge::elementAccessor<AppThumbnail>(),
                                            bridge::recordWriter<AppThumbnail>());
}

oxArray_tag const* RefItem::getRefEntitiesProperty() const {
    return bridge::accessObjectVector(refEntitiesCache, refEntities);
}
void RefItem::setRefEntitiesProperty(oxArray_tag const* value) {
    bridge::setObjectVector(value, refEntitiesCache, refEntities);
}
oxArray_tag const* RefItem::getSyntaxGroupsProperty() const {
    return bridge::accessObjectVector(syntaxGroupsCache, syntaxGroups);
}
void RefItem::setSyntaxGroupProperty(oxArray_tag const* value) {
    bridge::setObjectVector(value, syntaxGroupsCache, syntaxGroups);
}
oxArray_tag const* RefItem::getInputGroupsProperty() const {
    return bridge::accessObjectVector(inputGroupsCache, inputGroups);
}
void RefItem::setInputGroupsProperty(oxArray_tag const* value) {
    bridge::setObjectVector(value, inputGroupsCache, inputGroups);
}
oxArray_tag const* RefItem::getOutputsProperty() const { return bridge::accessObjectVector(outputsCache, outputs); }
void RefItem::setOutputsProperty(oxArray_tag const* value) { bridge::setObjectVector(value, outputsCache, outputs); }
oxArray_tag const* RefItem::getClassPropertyGroupsProperty() const {
    return bridge::accessObjectVector(classPropertyGroupsCache, classPropertyGroups);
}
void RefItem::setClassPropertyGroupsProperty(oxArray_tag const* value) {
    bridge::setObjectVector(value, classPropertyGroupsCache, classPropertyGroups);
}
oxArray_tag const* RefItem::getSeeAlsoProperty() const { return bridge::accessObjectVector(seeAlsoCache, seeAlso); }
void RefItem::setSeeAlsoProperty(oxArray_tag const* value) { bridge::setObjectVector(value, seeAlsoCache, seeAlso); }
oxArray_tag const* RefItem::getExamplesProperty() const { return bridge::accessObjectVector(examplesCache, examples); }
void RefItem::setExamplesProperty(oxArray_tag const* value) { bridge::setObjectVector(value, examplesCache, examples); }
oxArray_tag const* RefItem::getParametersProperty() const {
    return bridge::accessObjectVector(parametersCache, parameters);
}
void RefItem::setParametersProperty(oxArray_tag const* value) {
    bridge::setObjectVector(value, parametersCache, parameters);
}

bool RefItem::operator==(RefItem const& other) const {
    // Declaration order; each vector compares its count first, then its elements in order.
    return records::sameText(href, other.getHref()) && refEntities == other.getRefEntities() &&
           records::sameText(packageName, other.getPackageName()) &&
           records::sameText(purpose, other.getPurpose()) &&
           records::sameText(introducedIn, other.getIntroduced()) &&
           records::sameText(description, other.getDescription()) &&
           appThumbnail == other.getAppThumbnail() && deprecationStatus == other.getDeprecationStatus() &&
           syntaxGroups == other.getSyntaxGroups() && inputGroups == other.getInputGroups() &&
           outputs == other.getOutputs() && classPropertyGroups == other.getClassPropertyGroups() &&
           seeAlso == other.getSeeAlsoInfo() && examples == other.getExamples() &&
           parameters == other.getParameters();
}

RefItem RefItem::copy() const {
    RefItem result;  // every cache slot starts empty and stays so
    result.href = href;
    result.refEntities = bridge::copyEach(refEntities);
    result.packageName = packageName;
    result.purpose = purpose;
    result.introducedIn = introducedIn;
    result.description = description;
    result.appThumbnail = appThumbnail.copy();
    result.deprecationStatus = deprecationStatus;
    result.syntaxGroups = bridge::copyEach(syntaxGroups);
    result.inputGroups = bridge::copyEach(inputGroups);
    result.outputs = bridge::copyEach(outputs);
    result.classPropertyGroups = bridge::copyEach(classPropertyGroups);
    result.seeAlso = bridge::copyEach(seeAlso);
    result.examples = bridge::copyEach(examples);
    result.parameters = bridge::copyEach(parameters);
    return result;
}

}  // namespace reference::property
