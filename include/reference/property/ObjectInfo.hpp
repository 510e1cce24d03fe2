// What every documented item shares: name, purpose, values and link. A plain,
// non-polymorphic base of Input, Output, Parameter and ClassProperty; never a
// host class of its own (it has a namespace but no class name).
#pragma once

#include <reference/property/Export.hpp>
#include <reference/property/HostArray.hpp>

#include <string>
#include <vector>

namespace reference::property {

class REFERENCE_PROPERTY_API ObjectInfo {
public:
    ObjectInfo() = default;
    ObjectInfo(ObjectInfo const&) = default;
    ObjectInfo(ObjectInfo&&) = default;
    ObjectInfo& operator=(ObjectInfo const&) = default;
    ObjectInfo& operator=(ObjectInfo&&) = default;
    ~ObjectInfo();

    std::u16string const& getName() const;
    std::u16string const& getPurpose() const;
    std::vector<std::u16string> const& getValues() const;
    std::u16string const& getHref() const;

    /// Host string properties over name, purpose and href.
    std::u16string const& getNameProperty() const;
    void setNameProperty(std::u16string const* value);
    std::u16string const& getPurposeProperty() const;
    void setPurposeProperty(std::u16string const* value);
    std::u16string const& getHrefProperty() const;
    void setHrefProperty(std::u16string const* value);

    /// Host string-list property over values: the cached host string array, borrowed
    /// until the property is set again or the record dies.
    oxArray_tag const* getValuesProperty() const;
    void setValuesProperty(oxArray_tag const* value);

    /// Compares name, purpose, values (count, then in order), href; the cache is ignored.
    bool operator==(ObjectInfo const& other) const;

    /// "ovrin.internal.reference.property", shared by the four kinds.
    static char const* getOCOSNamespaceName() noexcept;

private:
    std::u16string name;                  ///< name of the documented item
    std::u16string purpose;               ///< one-line description
    std::vector<std::u16string> values;   ///< values shown for the item, in order, duplicates allowed
    std::u16string href;                  ///< link target of the item
    mutable HostArrayPtr valuesCache;     ///< host string array standing for values; empty until first get or set
};

}  // namespace reference::property
