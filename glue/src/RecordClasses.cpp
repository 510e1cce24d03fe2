#include <reference/glue/Classes.hpp>

#include <reference/property/AppThumbnail.hpp>
#include <reference/property/ClassProperty.hpp>
#include <reference/property/ClassPropertyGroup.hpp>
#include <reference/property/Example.hpp>
#include <reference/property/Input.hpp>
#include <reference/property/InputGroup.hpp>
#include <reference/property/Output.hpp>
#include <reference/property/Parameter.hpp>
#include <reference/property/RefEntity.hpp>
#include <reference/property/RefItem.hpp>
#include <reference/property/SeeAlso.hpp>
#include <reference/property/SyntaxGroup.hpp>

#include <ovrin/ocos.hpp>

#include <string>
#include <typeinfo>

namespace reference::glue {

namespace {

/// The host class name of the page record, which has no identity of its own in the library.
constexpr char refItemClassName[] = "ovrin.internal.reference.property.RefItem";

template <class T>
std::string qualifiedName() {
    return std::string(T::getOCOSNamespaceName()) + "." + T::getOCOSClassName();
}

/// Registers `T` under `name`: the host object owns a heap `T`, deletes it on disposal,
/// and makes a default one on construction.
template <class T>
void defineRecordClass(std::string name) {
    ocos::ClassDefinition definition;
    definition.qualifiedName = std::move(name);
    definition.nativeType = &typeid(T);
    definition.dispose = [](void* record) noexcept { delete static_cast<T*>(record); };
    definition.makeDefault = []() -> void* { return new T; };
    ocos::COSClass::define(std::move(definition));
}

template <class T>
void defineRecordClass() {
    defineRecordClass<T>(qualifiedName<T>());
}

}  // namespace

void registerRecordClasses() {
    using namespace reference::property;
    defineRecordClass<AppThumbnail>();
    defineRecordClass<SeeAlso>();
    defineRecordClass<Example>();
    defineRecordClass<RefEntity>();
    defineRecordClass<Input>();
    defineRecordClass<Output>();
    defineRecordClass<Parameter>();
    defineRecordClass<ClassProperty>();
    defineRecordClass<InputGroup>();
    defineRecordClass<ClassPropertyGroup>();
    defineRecordClass<SyntaxGroup>();
    defineRecordClass<RefItem>(refItemClassName);
}

}  // namespace reference::glue
