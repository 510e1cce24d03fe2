// Symbol visibility of the reference utilities: hidden by default, these marked public.
#pragma once

#if defined(_WIN32)
#define REFERENCE_UTILS_API
#else
#define REFERENCE_UTILS_API __attribute__((visibility("default")))
#endif
