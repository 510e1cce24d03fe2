#include <reference/property/SeeAlso.hpp>

#include "bridge/ClassIdentity.hpp"
#include "records/TextEquality.hpp"

#include <reference/utils/Properties.hpp>

namespace reference::property {

std::u16string const& SeeAlso::getUrl() const { return url; }
std::u16string const& SeeAlso::getName() const { return name; }

std::u16string const& SeeAlso::getNameProperty() const { return name; }
void SeeAlso::setNameProperty(std::u16string const* value) { utils::setStringProperty(name, value); }
std::u16string const& SeeAlso::getUrlProperty() const { return url; }
void SeeAlso::setUrlProperty(std::u16string const* value) { utils::setStringProperty(url, value); }

bool SeeAlso::operator==(SeeAlso const& other) const {
    return records::sameText(url, other.getUrl()) && records::sameText(name, other.getName());
}

SeeAlso SeeAlso::copy() const { return *this; }

char const* SeeAlso::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }
char const* SeeAlso::getOCOSClassName() noexcept { return "SeeAlso"; }

}  // namespace reference::property
