// What kind of syntax a syntax group or argument belongs to.
#pragma once

#include <reference/property/Vocabulary.hpp>
#include <reference/property/SyntaxType.def>

namespace reference::property {

/// Host class "ovrin.internal.reference.property.SyntaxType"; its members are listed in SyntaxType.def.
REFERENCE_PROPERTY_DECLARE_VOCABULARY(SyntaxType, REFERENCE_PROPERTY_SYNTAX_TYPE_MEMBERS)

}  // namespace reference::property
