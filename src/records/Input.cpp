#include <reference/property/Input.hpp>

#include "bridge/EnumProperty.hpp"
#include "records/TextEquality.hpp"

#include <reference/utils/Properties.hpp>

namespace reference::property {

Input::~Input() = default;

SyntaxType::Value Input::getSyntaxType() const { return syntaxType; }
bool Input::isNameValuePair() const { return m_isNameValuePair; }
std::u16string const& Input::getDefaultValue() const { return defaultValue; }

oxArray_tag const* Input::getSyntaxTypeProperty() const {
    return bridge::accessEnumCache<SyntaxType>(syntaxTypeCache, syntaxType);
}
void Input::setSyntaxTypeProperty(oxArray_tag const* value) {
    bridge::setEnumAndCache<SyntaxType>(value, syntaxTypeCache, syntaxType);
}

std::u16string const& Input::getDefaultValueProperty() const { return defaultValue; }
void Input::setDefaultValueProperty(std::u16string const* value) { utils::setStringProperty(defaultValue, value); }

bool Input::getIsNameValuePairProperty() const { return m_isNameValuePair; }
void Input::setIsNameValuePairProperty(bool value) { m_isNameValuePair = value; }

bool Input::operator==(Input const& other) const {
    return syntaxType == other.getSyntaxType() && m_isNameValuePair == other.isNameValuePair() &&
           records::sameText(defaultValue, other.getDefaultValue()) && ObjectInfo::operator==(other);
}

Input Input::copy() const { return *this; }

char const* Input::getOCOSClassName() noexcept { return "Input"; }

}  // namespace reference::property
