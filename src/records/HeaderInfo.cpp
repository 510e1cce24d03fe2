#include <reference/property/HeaderInfo.hpp>

#include <reference/utils/Properties.hpp>

namespace reference::property {

std::u16string const& HeaderInfo::getProductName() const { return productName; }
std::u16string const& HeaderInfo::getBaseCode() const { return baseCode; }
std::u16string const& HeaderInfo::getHelpFolder() const { return helpFolder; }
std::u16string const& HeaderInfo::getHelpLocation() const { return helpLocation; }

std::u16string const& HeaderInfo::getProductNameProperty() const { return productName; }
void HeaderInfo::setProductNameProperty(std::u16string const* value) { utils::setStringProperty(productName, value); }
std::u16string const& HeaderInfo::getHelpFolderProperty() const { return helpFolder; }
void HeaderInfo::setHelpFolderProperty(std::u16string const* value) { utils::setStringProperty(helpFolder, value); }
std::u16string const& HeaderInfo::getHelpLocationProperty() const { return helpLocation; }
void HeaderInfo::setHelpLocationProperty(std::u16string const* value) {
    utils::setStringProperty(helpLocation, value);
}

HeaderInfo HeaderInfo::copy() const { return *this; }

}  // namespace reference::property
