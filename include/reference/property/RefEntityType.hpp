// What kind of thing a reference entity is.
#pragma once

#include <reference/property/Vocabulary.hpp>
#include <reference/property/RefEntityType.def>

namespace reference::property {

/// Host class "ovrin.internal.reference.property.RefEntityType"; its members are listed in RefEntityType.def.
REFERENCE_PROPERTY_DECLARE_VOCABULARY(RefEntityType, REFERENCE_PROPERTY_REF_ENTITY_TYPE_MEMBERS)

}  // namespace reference::property
