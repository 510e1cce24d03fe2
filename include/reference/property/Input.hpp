// One input argument of a documented function.
#pragma once

#include <reference/property/Export.hpp>
#include <reference/property/HostArray.hpp>
#include <reference/property/ObjectInfo.hpp>
#include <reference/property/SyntaxType.hpp>

#include <string>

namespace reference::property {

class REFERENCE_PROPERTY_API Input : public ObjectInfo {
public:
    Input() = default;
    Input(Input const&) = default;
    Input(Input&&) = default;
    Input& operator=(Input const&) = default;
    Input& operator=(Input&&) = default;
    ~Input();

    SyntaxType::Value getSyntaxType() const;
    bool isNameValuePair() const;
    std::u16string const& getDefaultValue() const;

    /// Host enumeration property over syntaxType (see RefEntity for the rule).
    oxArray_tag const* getSyntaxTypeProperty() const;
    void setSyntaxTypeProperty(oxArray_tag const* value);
    /// Host string property over defaultValue.
    std::u16string const& getDefaultValueProperty() const;
    void setDefaultValueProperty(std::u16string const* value);
    /// Host bool property: the flag, stored as given.
    bool getIsNameValuePairProperty() const;
    void setIsNameValuePairProperty(bool value);

    /// Compares syntaxType, isNameValuePair, defaultValue, then the ObjectInfo part.
    bool operator==(Input const& other) const;
    /// Member-wise: every cache is shared with the source.
    Input copy() const;

    /// "Input".
    static char const* getOCOSClassName() noexcept;

private:
    SyntaxType::Value syntaxType = SyntaxType::getDefaultValue();  ///< kind of syntax the input belongs to
    std::u16string defaultValue;                                   ///< default value, as text
    bool m_isNameValuePair = false;                                ///< true for a name-value pair argument
    mutable HostArrayPtr syntaxTypeCache;  ///< host object standing for syntaxType; empty until first get or set
};

}  // namespace reference::property
