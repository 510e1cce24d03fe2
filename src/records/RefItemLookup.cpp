#include <reference/property/RefItemLookup.hpp>

namespace reference::property {

std::u16string const& RefItemLookup::getName() const { return name; }
RefEntityType::Value RefItemLookup::getType() const { return type; }
std::u16string const& RefItemLookup::getPurpose() const { return purpose; }
bool RefItemLookup::isDeprecated() const { return deprecated; }
std::u16string const& RefItemLookup::getHref() const { return href; }
FunctionType::Value RefItemLookup::getFunctionType() const { return functionType; }

RefItemLookup RefItemLookup::copy() const { return *this; }

}  // namespace reference::property
