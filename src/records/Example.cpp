#include <reference/property/Example.hpp>

#include "bridge/ClassIdentity.hpp"
#include "records/TextEquality.hpp"

#include <reference/utils/Properties.hpp>

namespace reference::property {

std::u16string const& Example::getUrl() const { return url; }
std::u16string const& Example::getOpenCommand() const { return openCommand; }
std::u16string const& Example::getTitle() const { return title; }

std::u16string const& Example::getUrlProperty() const { return url; }
void Example::setUrlProperty(std::u16string const* value) { utils::setStringProperty(url, value); }
std::u16string const& Example::getOpenCommandProperty() const { return openCommand; }
void Example::setOpenCommandProperty(std::u16string const* value) { utils::setStringProperty(openCommand, value); }
std::u16string const& Example::getTitleProperty() const { return title; }
void Example::setTitleProperty(std::u16string const* value) { utils::setStringProperty(title, value); }

bool Example::operator==(Example const& other) const {
    return records::sameText(url, other.getUrl()) && records::sameText(openCommand, other.getOpenCommand()) &&
           records::sameText(title, other.getTitle());
}

Example Example::copy() const { return *this; }

char const* Example::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }
char const* Example::getOCOSClassName() noexcept { return "Example"; }

}  // namespace reference::property
