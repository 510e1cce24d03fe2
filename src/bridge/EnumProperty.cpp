#include "bridge/EnumProperty.hpp"

#include <reference/property/RequireScalar.hpp>

#include <ovrin/array.hpp>
#include <ovrin/ocos.hpp>

namespace reference::property::bridge {

namespace {

/// The exception is made from a key that dies before the throw.
RequireScalar makeRequireScalar() {
    component_Ovrin::catalog_class::key_RequireScalar const key;
    return RequireScalar(key);
}

}  // namespace

std::uint32_t readScalarNumber(oxArray_tag const* value) {
    if (omGetNumberOfElementsInUnderlyingArray(value) != 1) throw makeRequireScalar();
    return *static_cast<std::uint32_t const*>(oxGetData(omGetUnderlyingArray(value)));
}

}  // namespace reference::property::bridge
