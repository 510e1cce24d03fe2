// The picture shown for an app, with its alternative text.
#pragma once

#include <reference/property/Export.hpp>

#include <string>

namespace reference::property {

class REFERENCE_PROPERTY_API AppThumbnail {
public:
    std::u16string const& getFileRef() const;
    std::u16string const& getAlt() const;

    /// Host string properties: the getters return the very members above; the
    /// setters hand the member and the pointer to the string-property rule.
    std::u16string const& getFileRefProperty() const;
    void setFileRefProperty(std::u16string const* value);
    std::u16string const& getAltProperty() const;
    void setAltProperty(std::u16string const* value);

    /// Equal when fileRef, then alt, have the same code units.
    bool operator==(AppThumbnail const& other) const;
    AppThumbnail copy() const;

    static char const* getOCOSNamespaceName() noexcept;
    /// "AppThumbnail".
    static char const* getOCOSClassName() noexcept;

private:
    std::u16string fileRef;  ///< reference to the image file
    std::u16string alt;      ///< alternative text of the image
};

}  // namespace reference::property
