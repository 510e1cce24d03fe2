#include <reference/property/DeprecationStatus.hpp>

#include "enums/DefineVocabulary.hpp"

// The switch lists the default member (0, "Current") too; it is also the fallback.
REFERENCE_ENUMS_DEFINE_VOCABULARY(DeprecationStatus, REFERENCE_PROPERTY_DEPRECATION_STATUS_MEMBERS, REFERENCE_ENUMS_DISPLAY_CASE)
