// One property of a documented class.
#pragma once

#include <reference/property/Export.hpp>
#include <reference/property/ObjectInfo.hpp>

#include <string>

namespace reference::property {

class REFERENCE_PROPERTY_API ClassProperty : public ObjectInfo {
public:
    std::u16string const& getDefaultValue() const;

    /// Host string property over defaultValue.
    std::u16string const& getDefaultValueProperty() const;
    void setDefaultValueProperty(std::u16string const* value);

    /// Compares defaultValue, then the ObjectInfo part.
    bool operator==(ClassProperty const& other) const;
    /// Member-wise: the values cache is shared with the source.
    ClassProperty copy() const;

    /// "ClassProperty".
    static char const* getOCOSClassName() noexcept;

private:
    std::u16string defaultValue;  ///< default value, as text
};

}  // namespace reference::property
