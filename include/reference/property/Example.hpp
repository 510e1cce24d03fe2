// One example of a reference page, with the command that opens it.
#pragma once

#include <reference/property/Export.hpp>

#include <string>

namespace reference::property {

class REFERENCE_PROPERTY_API Example {
public:
    std::u16string const& getUrl() const;
    std::u16string const& getOpenCommand() const;
    std::u16string const& getTitle() const;

    /// Host string properties over the members above.
    std::u16string const& getUrlProperty() const;
    void setUrlProperty(std::u16string const* value);
    std::u16string const& getOpenCommandProperty() const;
    void setOpenCommandProperty(std::u16string const* value);
    std::u16string const& getTitleProperty() const;
    void setTitleProperty(std::u16string const* value);

    /// Equal when url, then openCommand, then title have the same code units.
    bool operator==(Example const& other) const;
    Example copy() const;

    static char const* getOCOSNamespaceName() noexcept;
    /// "Example".
    static char const* getOCOSClassName() noexcept;

private:
    std::u16string url;          ///< where the example lives
    std::u16string openCommand;  ///< command that opens the example
    std::u16string title;        ///< the example's title
};

}  // namespace reference::property
