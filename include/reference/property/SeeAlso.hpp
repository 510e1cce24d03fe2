// One see-also link of a reference page.
#pragma once

#include <reference/property/Export.hpp>

#include <string>

namespace reference::property {

class REFERENCE_PROPERTY_API SeeAlso {
public:
    std::u16string const& getUrl() const;
    std::u16string const& getName() const;

    /// Host string properties over the members above.
    std::u16string const& getNameProperty() const;
    void setNameProperty(std::u16string const* value);
    std::u16string const& getUrlProperty() const;
    void setUrlProperty(std::u16string const* value);

    /// Equal when url, then name, have the same code units.
    bool operator==(SeeAlso const& other) const;
    SeeAlso copy() const;

    static char const* getOCOSNamespaceName() noexcept;
    /// "SeeAlso".
    static char const* getOCOSClassName() noexcept;

private:
    std::u16string url;   ///< link target
    std::u16string name;  ///< text shown for the link
};

}  // namespace reference::property
