// How the library's classes are known to the host object system.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace reference::property::bridge {

/// The host namespace of every class of the library; NUL-terminated, static.
inline constexpr char hostNamespace[] = "ovrin.internal.reference.property";

/// The qualified host class name of `T`: its namespace, ".", its class name.
/// Built with one allocation. A null name from either operation throws std::logic_error.
template <class T>
std::string qualifiedClassName() {
    char const* const space = T::getOCOSNamespaceName();
    char const* const className = T::getOCOSClassName();
    if (space == nullptr || className == nullptr) throw std::logic_error("qualifiedClassName: null class name");
    std::string_view const spacePart(space);
    std::string_view const classPart(className);
    std::string name;
    name.reserve(spacePart.size() + 1 + classPart.size());
    name.append(spacePart).append(1, '.').append(classPart);
    return name;
}

}  // namespace reference::property::bridge
