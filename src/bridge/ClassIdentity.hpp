// How the library's classes are known to the host object system.
#pragma once

#include <string>

namespace reference::property::bridge {

/// The host namespace of every class of the library; NUL-terminated, static.
inline constexpr char hostNamespace[] = "ovrin.internal.reference.property";

/// The qualified host class name of `T`: its namespace, ".", its class name.
/// A null name from either operation throws std::logic_error from std::string.
template <class T>
std::string qualifiedClassName() {
    std::string name(T::getOCOSNamespaceName());
    std::string const className(T::getOCOSClassName());
    name.reserve(name.size() + 1 + className.size());
    name += '.';
    name += className;
    return name;
}

}  // namespace reference::property::bridge
