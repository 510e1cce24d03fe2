// One output of a documented function.
#pragma once

#include <reference/property/Export.hpp>
#include <reference/property/HostArray.hpp>
#include <reference/property/ObjectInfo.hpp>
#include <reference/property/SyntaxType.hpp>

namespace reference::property {

class REFERENCE_PROPERTY_API Output : public ObjectInfo {
public:
    Output() = default;
    Output(Output const&) = default;
    Output(Output&&) = default;
    Output& operator=(Output const&) = default;
    Output& operator=(Output&&) = default;
    ~Output();

    SyntaxType::Value getSyntaxType() const;

    /// Host enumeration property over syntaxType (see RefEntity for the rule).
    oxArray_tag const* getSyntaxTypeProperty() const;
    void setSyntaxTypeProperty(oxArray_tag const* value);

    /// Compares syntaxType, then the ObjectInfo part.
    bool operator==(Output const& other) const;
    /// Member-wise: every cache is shared with the source.
    Output copy() const;

    /// "Output".
    static char const* getOCOSClassName() noexcept;

private:
    SyntaxType::Value syntaxType = SyntaxType::getDefaultValue();  ///< kind of syntax the output belongs to
    mutable HostArrayPtr syntaxTypeCache;  ///< host object standing for syntaxType; empty until first get or set
};

}  // namespace reference::property
