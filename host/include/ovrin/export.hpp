// Symbol visibility of the host runtime: hidden by default, these marked public.
#pragma once

#if defined(_WIN32)
#define OVRIN_HOST_API
#else
#define OVRIN_HOST_API __attribute__((visibility("default")))
#endif
