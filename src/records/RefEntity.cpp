#include <reference/property/RefEntity.hpp>

#include "bridge/ClassIdentity.hpp"
#include "bridge/EnumProperty.hpp"
#include "records/TextEquality.hpp"

#include <reference/utils/Properties.hpp>

namespace reference::property {

RefEntityType::Value RefEntity::getRefEntityType() const { return refEntityType; }
std::u16string const& RefEntity::getName() const { return name; }
FunctionType::Value RefEntity::getFunctionType() const { return functionType; }

std::u16string const& RefEntity::getNameProperty() const { return name; }
void RefEntity::setNameProperty(std::u16string const* value) { utils::setStringProperty(name, value); }

oxArray_tag const* RefEntity::getRefEntityTypeProperty() const {
    return bridge::accessEnumCache<RefEntityType>(refEntityTypeCache, refEntityType);
}
void RefEntity::setRefEntityTypeProperty(oxArray_tag const* value) {
    bridge::setEnumAndCache<RefEntityType>(value, refEntityTypeCache, refEntityType);
}
oxArray_tag const* RefEntity::getFunctionTypeProperty() const {
    return bridge::accessEnumCache<FunctionType>(functionTypeCache, functionType);
}
void RefEntity::setFunctionTypeProperty(oxArray_tag const* value) {
    bridge::setEnumAndCache<FunctionType>(value, functionTypeCache, functionType);
}

bool RefEntity::operator==(RefEntity const& other) const {
    return refEntityType == other.getRefEntityType() && records::sameText(name, other.getName()) &&
           functionType == other.getFunctionType();
}

// The copy shares both cached host objects: the handles are copied, taking a reference each.
RefEntity RefEntity::copy() const { return *this; }

char const* RefEntity::getOCOSNamespaceName() noexcept { return bridge::hostNamespace; }
char const* RefEntity::getOCOSClassName() noexcept { return "RefEntity"; }

}  // namespace reference::property
