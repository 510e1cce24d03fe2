// Symbol visibility of the reference property library: every symbol is hidden
// unless marked with REFERENCE_PROPERTY_API; the host binds to those by name.
#pragma once

#if defined(_WIN32)
#define REFERENCE_PROPERTY_API
#else
#define REFERENCE_PROPERTY_API __attribute__((visibility("default")))
#endif
