#include <reference/glue/Classes.hpp>
#include <reference/glue/Enumerations.hpp>
#include <reference/glue/PropertyTable.hpp>

#include <ovrin/ocos.hpp>

#include <utility>

namespace reference::glue {

void registerClasses() {
    // Registration is idempotent in the host: defining a name again returns the class already there.
    registerEnumerationClasses();
    registerRecordClasses();
}

void registerEnumerationClasses() {
    for (EnumerationInfo const* info : allEnumerations()) {
        ocos::ClassDefinition definition;
        definition.qualifiedName = info->qualifiedName;
        definition.isEnumeration = true;  // no native record: made from unsigned 32-bit numbers
        ocos::COSClass::define(std::move(definition));
    }
}

void registerRecordClasses() {
    for (PropertyTable const* table : allTables()) {
        ocos::ClassDefinition definition;
        definition.qualifiedName = table->qualifiedName;
        definition.nativeType = table->nativeType;
        definition.dispose = table->dispose;
        definition.makeDefault = table->makeDefault;
        ocos::COSClass::define(std::move(definition));
    }
}

}  // namespace reference::glue
