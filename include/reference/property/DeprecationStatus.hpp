// How far a documented item is on its way out.
#pragma once

#include <reference/property/Vocabulary.hpp>
#include <reference/property/DeprecationStatus.def>

namespace reference::property {

/// Host class "ovrin.internal.reference.property.DeprecationStatus"; its members are listed in DeprecationStatus.def.
REFERENCE_PROPERTY_DECLARE_VOCABULARY(DeprecationStatus, REFERENCE_PROPERTY_DEPRECATION_STATUS_MEMBERS)

}  // namespace reference::property
