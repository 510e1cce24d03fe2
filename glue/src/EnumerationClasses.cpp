#include <reference/glue/Classes.hpp>
#include <reference/glue/Enumerations.hpp>

#include <ovrin/ocos.hpp>

#include <utility>

namespace reference::glue {

void registerEnumerationClasses() {
    // No native record: an enumeration object is made from unsigned 32-bit numbers.
    for (EnumerationInfo const* info : allEnumerations()) {
        ocos::ClassDefinition definition;
        definition.qualifiedName = info->qualifiedName;
        definition.isEnumeration = true;
        ocos::COSClass::define(std::move(definition));
    }
}

}  // namespace reference::glue
