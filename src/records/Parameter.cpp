#include <reference/property/Parameter.hpp>

#include "records/TextEquality.hpp"

#include <reference/utils/Properties.hpp>

namespace reference::property {

std::u16string const& Parameter::getDefaultValue() const { return defaultValue; }

std::u16string const& Parameter::getDefaultValueProperty() const { return defaultValue; }
void Parameter::setDefaultValueProperty(std::u16string const* value) {
    utils::setStringProperty(defaultValue, value);
}

bool Parameter::operator==(Parameter const& other) const {
    return records::sameText(defaultValue, other.getDefaultValue()) && ObjectInfo::operator==(other);
}

Parameter Parameter::copy() const { return *this; }

char const* Parameter::getOCOSClassName() noexcept { return "Parameter"; }

}  // namespace reference::property
