#include <reference/property/RefEntityType.hpp>

#include "enums/DefineVocabulary.hpp"

// The default member's display text is reached only as the switch's fallback.
REFERENCE_ENUMS_DEFINE_VOCABULARY(RefEntityType, REFERENCE_PROPERTY_REF_ENTITY_TYPE_MEMBERS, REFERENCE_PROPERTY_SKIP_MEMBER)
