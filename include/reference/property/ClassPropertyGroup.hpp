// A titled group of the properties of a documented class.
#pragma once

#include <reference/property/ClassProperty.hpp>
#include <reference/property/Export.hpp>
#include <reference/property/HostArray.hpp>

#include <string>
#include <vector>

namespace reference::property {

class REFERENCE_PROPERTY_API ClassPropertyGroup {
public:
    ClassPropertyGroup() = default;
    /// Member-wise, as is assignment: the copy shares the source's cached ClassProperty array and the ClassProperty
    /// records inside it, so the source and such copies are used through the host by one thread at a time.
    ClassPropertyGroup(ClassPropertyGroup const&) = default;
    ClassPropertyGroup(ClassPropertyGroup&&) = default;
    ClassPropertyGroup& operator=(ClassPropertyGroup const&) = default;
    ClassPropertyGroup& operator=(ClassPropertyGroup&&) = default;
    ~ClassPropertyGroup();

    std::u16string const& getTitle() const;
    std::vector<ClassProperty> const& getClassProperties() const;

    /// Host string property over title.
    std::u16string const& getTitleProperty() const;
    void setTitleProperty(std::u16string const* value);
    /// Host object-array property over classProperties (note the differing names):
    /// a 1-by-N array of ClassProperty objects, built once and cached.
    oxArray_tag const* getPropertiesProperty() const;
    void setPropertiesProperty(oxArray_tag const* value);

    /// Compares title, then classProperties (count, then in order); the cache is ignored.
    bool operator==(ClassPropertyGroup const& other) const;
    /// Copies title and each property through ClassProperty::copy(); the copy's cache is empty.
    /// It shares no record with the source, only cached arrays of numbers and texts that nothing
    /// changes in place, so the copy may be used through the host on another thread.
    ClassPropertyGroup copy() const;

    static char const* getOCOSNamespaceName() noexcept;
    /// "ClassPropertyGroup".
    static char const* getOCOSClassName() noexcept;

private:
    std::u16string title;                          ///< heading of the group
    std::vector<ClassProperty> classProperties;    ///< the class properties, in page order
    mutable HostArrayPtr propertiesCache;  ///< host array of ClassProperty objects; empty until first get or set
};

}  // namespace reference::property
