// Uses the installed library and its host through their installed headers.
#include <reference/property/DeprecationStatus.hpp>

#include <ovrin/array.hpp>

#include <cstdio>
#include <string>

int main() {
    using reference::property::DeprecationStatus;
    std::string const text = DeprecationStatus::enumToString(DeprecationStatus::Warn);
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, 2));
    bool const ok = text == "Warn" && DeprecationStatus::stringToEnum("deny") == DeprecationStatus::Deny &&
                    oxGetNumberOfElements(array.get()) == 2;
    std::printf("%s: enumToString(Warn) = \"%s\"\n", ok ? "consumer ok" : "consumer FAILED", text.c_str());
    return ok ? 0 : 1;
}
