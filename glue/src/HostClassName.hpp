// The host class name of a library class, as the glue registers and looks it up.
#pragma once

#include <string>

namespace reference::glue {

/// `T`'s host namespace, ".", its class name.
template <class T>
std::string hostClassName() {
    return std::string(T::getOCOSNamespaceName()) + "." + T::getOCOSClassName();
}

}  // namespace reference::glue
