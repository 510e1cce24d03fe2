#include <reference/property/Output.hpp>

#include "bridge/EnumProperty.hpp"

namespace reference::property {

Output::~Output() = default;

SyntaxType::Value Output::getSyntaxType() const { return syntaxType; }

oxArray_tag const* Output::getSyntaxTypeProperty() const {
    return bridge::accessEnumCache<SyntaxType>(syntaxTypeCache, syntaxType);
}
void Output::setSyntaxTypeProperty(oxArray_tag const* value) {
    bridge::setEnumAndCache<SyntaxType>(value, syntaxTypeCache, syntaxType);
}

bool Output::operator==(Output const& other) const {
    return syntaxType == other.getSyntaxType() && ObjectInfo::operator==(other);
}

Output Output::copy() const { return *this; }

char const* Output::getOCOSClassName() noexcept { return "Output"; }

}  // namespace reference::property
