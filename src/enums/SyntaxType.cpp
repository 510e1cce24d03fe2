#include <reference/property/SyntaxType.hpp>

#include "enums/DefineVocabulary.hpp"

// The default member's display text is reached only as the switch's fallback.
REFERENCE_ENUMS_DEFINE_VOCABULARY(SyntaxType, REFERENCE_PROPERTY_SYNTAX_TYPE_MEMBERS, REFERENCE_PROPERTY_SKIP_MEMBER)
