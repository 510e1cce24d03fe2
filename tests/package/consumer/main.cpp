// Uses the installed library and its host through their installed headers.
#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/Version.hpp>

#include <ovrin/array.hpp>

#include <cstdio>
#include <string>

#if __has_include(<ovrin/testing.hpp>)
#error "the host's test hooks are installed"
#endif
static_assert(REFERENCE_PROPERTY_VERSION ==
              REFERENCE_PROPERTY_VERSION_MAJOR * 10000 + REFERENCE_PROPERTY_VERSION_MINOR * 100 +
                  REFERENCE_PROPERTY_VERSION_PATCH);

int main() {
    using reference::property::DeprecationStatus;
    std::string const text = DeprecationStatus::enumToString(DeprecationStatus::Warn);
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, 2));
    bool const ok = text == "Warn" && DeprecationStatus::stringToEnum("deny") == DeprecationStatus::Deny &&
                    oxGetNumberOfElements(array.get()) == 2;
    std::printf("%s: reference_property %s, enumToString(Warn) = \"%s\"\n", ok ? "consumer ok" : "consumer FAILED",
                REFERENCE_PROPERTY_VERSION_STRING, text.c_str());
    return ok ? 0 : 1;
}
