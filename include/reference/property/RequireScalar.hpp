// The library's one error: a host enumeration value that is not exactly one element.
#pragma once

#include <reference/property/Export.hpp>

#include <ovrin/foundation/except.hpp>

#include <exception>

namespace reference::property {

/// Thrown by every enumeration property setter given 0 or 2 or more elements.
/// Catalog "Ovrin:class", key "RequireScalar", no arguments; its text comes from the host catalog.
using RequireScalar =
    foundation::core::except::Exception<component_Ovrin::catalog_class::key_RequireScalar, std::exception, void>;

}  // namespace reference::property

// Defined and exported by this library only, so the host catches it by type.
extern template class REFERENCE_PROPERTY_API
    foundation::core::except::Exception<component_Ovrin::catalog_class::key_RequireScalar, std::exception, void>;
