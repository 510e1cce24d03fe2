// Where a page's product and help files live. Has no host identity and no
// equality; its base code is visible to native code only.
#pragma once

#include <reference/property/Export.hpp>

#include <string>

namespace reference::property {

class RecordProducer;

class REFERENCE_PROPERTY_API HeaderInfo {
public:
    std::u16string const& getProductName() const;
    std::u16string const& getBaseCode() const;
    std::u16string const& getHelpFolder() const;
    std::u16string const& getHelpLocation() const;

    /// Host string properties; the base code has none on purpose.
    std::u16string const& getProductNameProperty() const;
    void setProductNameProperty(std::u16string const* value);
    std::u16string const& getHelpFolderProperty() const;
    void setHelpFolderProperty(std::u16string const* value);
    std::u16string const& getHelpLocationProperty() const;
    void setHelpLocationProperty(std::u16string const* value);

    /// All four members, the base code included.
    HeaderInfo copy() const;

private:
    friend class RecordProducer;

    std::u16string productName;   ///< product the page belongs to
    std::u16string baseCode;      ///< the product's base code; set only by its producer
    std::u16string helpFolder;    ///< folder of the product's help
    std::u16string helpLocation;  ///< location of the help
};

}  // namespace reference::property
