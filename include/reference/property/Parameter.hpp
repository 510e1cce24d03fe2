// One name-value parameter of a documented item.
#pragma once

#include <reference/property/Export.hpp>
#include <reference/property/ObjectInfo.hpp>

#include <string>

namespace reference::property {

class REFERENCE_PROPERTY_API Parameter : public ObjectInfo {
public:
    std::u16string const& getDefaultValue() const;

    /// Host string property over defaultValue.
    std::u16string const& getDefaultValueProperty() const;
    void setDefaultValueProperty(std::u16string const* value);

    /// Compares defaultValue, then the ObjectInfo part.
    bool operator==(Parameter const& other) const;
    /// Member-wise: the values cache is shared with the source.
    Parameter copy() const;

    /// "Parameter".
    static char const* getOCOSClassName() noexcept;

private:
    std::u16string defaultValue;  ///< default value, as text
};

}  // namespace reference::property
