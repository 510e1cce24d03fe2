#include <reference/property/ClassPropertyGroup.hpp>

#include "bridge/ClassIdentity.hpp"
#include "bridge/CopyInPlace.hpp"
#include "bridge/ObjectArray.hpp"
#include "records/TextEquality.hpp"

#include <reference/utils/Properties.hpp>

namespace reference::property {

ClassPropertyGroup::~ClassPropertyGroup() = default;

std::u16string const& ClassPropertyGroup::getTitle() const { return title; }
std::vector<ClassProperty> const& ClassPropertyGroup::getClassProperties() const { return classProperties; }

std::u16string const& ClassPropertyGroup::getTitleProperty() const { return title; }
void ClassPropertyGroup::setTitleProperty(std::u16string const* value) { utils::setStringProperty(title, value); }

oxArray_tag const* ClassPropertyGroup::getPropertiesProperty() const {
    return bridge::accessObjectVector(propertiesCache, classProperties);
}
void ClassPropertyGroup::setPropertiesProperty(oxArray_tag const* value) {
    bridge::setObjectVector(value, propertiesCache, classProperties);
}

bool ClassPropertyGroup::operator==(ClassPropertyGroup const& other) const {
    return records::sameText(title, other.getTitle()) && classProperties == other.getClassProperties();
}

ClassPropertyGroup ClassPropertyGroup::copy() const {
    ClassPropertyGroup result;
    result.title = title;
    result.classProperties = bridge::copyEach(classProperties);
    return result;
}

char const* ClassPropertyGroup::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }
char const* ClassPropertyGroup::getOCOSClassName() noexcept { return "ClassPropertyGroup"; }

}  // namespace reference::property
