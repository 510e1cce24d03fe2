#include <reference/property/ClassProperty.hpp>

#include "records/TextEquality.hpp"

#include <reference/utils/Properties.hpp>

namespace reference::property {

std::u16string const& ClassProperty::getDefaultValue() const { return defaultValue; }

std::u16string const& ClassProperty::getDefaultValueProperty() const { return defaultValue; }
void ClassProperty::setDefaultValueProperty(std::u16string const* value) {
    utils::setStringProperty(defaultValue, value);
}

bool ClassProperty::operator==(ClassProperty const& other) const {
    return records::sameText(defaultValue, other.getDefaultValue()) && ObjectInfo::operator==(other);
}

ClassProperty ClassProperty::copy() const { return *this; }

char const* ClassProperty::getOCOSClassName() noexcept { return "ClassProperty"; }

}  // namespace reference::property
