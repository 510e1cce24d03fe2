// One named entity that a reference page documents.
#pragma once

#include <reference/property/Export.hpp>
#include <reference/property/FunctionType.hpp>
#include <reference/property/HostArray.hpp>
#include <reference/property/RefEntityType.hpp>

#include <string>

namespace reference::property {

class REFERENCE_PROPERTY_API RefEntity {
public:
    RefEntityType::Value getRefEntityType() const;
    std::u16string const& getName() const;
    FunctionType::Value getFunctionType() const;

    /// Host string property over `name`.
    std::u16string const& getNameProperty() const;
    void setNameProperty(std::u16string const* value);

    /// Host enumeration properties. A getter returns the cached host object (built
    /// from the stored number on first use), borrowed until the property is set again
    /// or the record dies. A setter ignores null, throws RequireScalar unless given
    /// exactly one element, and stores the number as it is.
    oxArray_tag const* getRefEntityTypeProperty() const;
    void setRefEntityTypeProperty(oxArray_tag const* value);
    oxArray_tag const* getFunctionTypeProperty() const;
    void setFunctionTypeProperty(oxArray_tag const* value);

    /// Compares refEntityType, name, functionType in that order; caches are ignored.
    bool operator==(RefEntity const& other) const;
    /// Member-wise: the copy shares both cached host objects with the source.
    RefEntity copy() const;

    static char const* getOCOSNamespaceName() noexcept;
    /// "RefEntity".
    static char const* getOCOSClassName() noexcept;

private:
    RefEntityType::Value refEntityType = RefEntityType::getDefaultValue();  ///< kind of entity
    std::u16string name;                                                    ///< the entity's name
    FunctionType::Value functionType = FunctionType::getDefaultValue();     ///< function type of the entity
    mutable HostArrayPtr refEntityTypeCache;  ///< host object standing for refEntityType; empty until first get or set
    mutable HostArrayPtr functionTypeCache;   ///< host object standing for functionType; empty until first get or set
};

}  // namespace reference::property
