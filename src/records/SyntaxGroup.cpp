#include <reference/property/SyntaxGroup.hpp>

#include "bridge/ClassIdentity.hpp"
#include "bridge/EnumProperty.hpp"
#include "records/TextEquality.hpp"

#include <reference/utils/Properties.hpp>

namespace reference::property {

SyntaxGroup::~SyntaxGroup() = default;

std::u16string const& SyntaxGroup::getTitle() const { return title; }
SyntaxType::Value SyntaxGroup::getSyntaxType() const { return syntaxType; }
std::vector<std::u16string> const& SyntaxGroup::getSyntaxes() const { return syntaxes; }

std::u16string const& SyntaxGroup::getTitleProperty() const { return title; }
void SyntaxGroup::setTitleProperty(std::u16string const* value) { utils::setStringProperty(title, value); }

oxArray_tag const* SyntaxGroup::getSyntaxesProperty() const {
    return utils::accessStringVectorCache(syntaxesCache, syntaxes);
}
void SyntaxGroup::setSyntaxesProperty(oxArray_tag const* value) {
    utils::setStringVectorAndCache(value, syntaxesCache, syntaxes);
}

oxArray_tag const* SyntaxGroup::getSyntaxTypeProperty() const {
    return bridge::accessEnumCache<SyntaxType>(syntaxTypeCache, syntaxType);
}
void SyntaxGroup::setSyntaxTypeProperty(oxArray_tag const* value) {
    bridge::setEnumAndCache<SyntaxType>(value, syntaxTypeCache, syntaxType);
}

bool SyntaxGroup::operator==(SyntaxGroup const& other) const {
    return records::sameText(title, other.getTitle()) && syntaxType == other.getSyntaxType() &&
           records::sameTexts(syntaxes, other.getSyntaxes());
}

SyntaxGroup SyntaxGroup::copy() const { return *this; }

char const* SyntaxGroup::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }
char const* SyntaxGroup::getOCOSClassName() noexcept { return "SyntaxGroup"; }

}  // namespace reference::property
