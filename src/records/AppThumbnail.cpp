#include <reference/property/AppThumbnail.hpp>

#include "bridge/ClassIdentity.hpp"
#include "records/TextEquality.hpp"

#include <reference/utils/Properties.hpp>

namespace reference::property {

std::u16string const& AppThumbnail::getFileRef() const { return fileRef; }
std::u16string const& AppThumbnail::getAlt() const { return alt; }

std::u16string const& AppThumbnail::getFileRefProperty() const { return fileRef; }
void AppThumbnail::setFileRefProperty(std::u16string const* value) { utils::setStringProperty(fileRef, value); }
std::u16string const& AppThumbnail::getAltProperty() const { return alt; }
void AppThumbnail::setAltProperty(std::u16string const* value) { utils::setStringProperty(alt, value); }

bool AppThumbnail::operator==(AppThumbnail const& other) const {
    return records::sameText(fileRef, other.getFileRef()) && records::sameText(alt, other.getAlt());
}

AppThumbnail AppThumbnail::copy() const { return *this; }

char const* AppThumbnail::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }
char const* AppThumbnail::getOCOSClassName() noexcept { return "AppThumbnail"; }

}  // namespace reference::property
