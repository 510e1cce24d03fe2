// What kind of callable a function page documents.
#pragma once

#include <reference/property/Vocabulary.hpp>
#include <reference/property/FunctionType.def>

namespace reference::property {

/// Host class "ovrin.internal.reference.property.FunctionType"; its members are listed in FunctionType.def.
REFERENCE_PROPERTY_DECLARE_VOCABULARY(FunctionType, REFERENCE_PROPERTY_FUNCTION_TYPE_MEMBERS)

}  // namespace reference::property
