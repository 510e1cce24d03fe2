#include <reference/glue/Classes.hpp>

#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/SyntaxType.hpp>

#include <ovrin/ocos.hpp>

#include <string>
#include <utility>

namespace reference::glue {

namespace {

/// Registers the host enumeration class of `Enum`: no native record, made from unsigned 32-bit numbers.
template <class Enum>
void defineEnumerationClass() {
    ocos::ClassDefinition definition;
    definition.qualifiedName = std::string(Enum::getOCOSNamespaceName()) + "." + Enum::getOCOSClassName();
    definition.isEnumeration = true;
    ocos::COSClass::define(std::move(definition));
}

}  // namespace

void registerEnumerationClasses() {
    defineEnumerationClass<property::DeprecationStatus>();
    defineEnumerationClass<property::FunctionType>();
    defineEnumerationClass<property::RefEntityType>();
    defineEnumerationClass<property::SyntaxType>();
}

}  // namespace reference::glue
