#include <reference/property/ObjectInfo.hpp>

#include "bridge/ClassIdentity.hpp"
#include "records/TextEquality.hpp"

#include <reference/utils/Properties.hpp>

namespace reference::property {

ObjectInfo::~ObjectInfo() = default;

std::u16string const& ObjectInfo::getName() const { return name; }
std::u16string const& ObjectInfo::getPurpose() const { return purpose; }
std::vector<std::u16string> const& ObjectInfo::getValues() const { return values; }
std::u16string const& ObjectInfo::getHref() const { return href; }

std::u16string const& ObjectInfo::getNameProperty() const { return name; }
void ObjectInfo::setNameProperty(std::u16string const* value) { utils::setStringProperty(name, value); }
std::u16string const& ObjectInfo::getPurposeProperty() const { return purpose; }
void ObjectInfo::setPurposeProperty(std::u16string const* value) { utils::setStringProperty(purpose, value); }
std::u16string const& ObjectInfo::getHrefProperty() const { return href; }
void ObjectInfo::setHrefProperty(std::u16string const* value) { utils::setStringProperty(href, value); }

oxArray_tag const* ObjectInfo::getValuesProperty() const { return utils::accessStringVectorCache(valuesCache, values); }
void ObjectInfo::setValuesProperty(oxArray_tag const* value) {
    utils::setStringVectorAndCache(value, valuesCache, values);
}

bool ObjectInfo::operator==(ObjectInfo const& other) const {
    return records::sameText(name, other.getName()) && records::sameText(purpose, other.getPurpose()) &&
           records::sameTexts(values, other.getValues()) && records::sameText(href, other.getHref());
}

char const* ObjectInfo::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }

}  // namespace reference::property
