// A titled group of the calling syntaxes of a documented item.
#pragma once

#include <reference/property/Export.hpp>
#include <reference/property/HostArray.hpp>
#include <reference/property/SyntaxType.hpp>

#include <string>
#include <vector>

namespace reference::property {

class REFERENCE_PROPERTY_API SyntaxGroup {
public:
    SyntaxGroup() = default;
    SyntaxGroup(SyntaxGroup const&) = default;
    SyntaxGroup(SyntaxGroup&&) = default;
    SyntaxGroup& operator=(SyntaxGroup const&) = default;
    SyntaxGroup& operator=(SyntaxGroup&&) = default;
    ~SyntaxGroup();

    std::u16string const& getTitle() const;
    SyntaxType::Value getSyntaxType() const;
    std::vector<std::u16string> const& getSyntaxes() const;

    /// Host string property over title.
    std::u16string const& getTitleProperty() const;
    void setTitleProperty(std::u16string const* value);
    /// Host string-list property over syntaxes.
    oxArray_tag const* getSyntaxesProperty() const;
    void setSyntaxesProperty(oxArray_tag const* value);
    /// Host enumeration property over syntaxType (see RefEntity for the rule).
    oxArray_tag const* getSyntaxTypeProperty() const;
    void setSyntaxTypeProperty(oxArray_tag const* value);

    /// Compares title, syntaxType, then syntaxes (count, then in order); caches are ignored.
    bool operator==(SyntaxGroup const& other) const;
    /// Member-wise, as are the copy constructor and assignment: both caches are shared with the
    /// source. They hold only numbers and texts, which nothing changes in place and whose host
    /// reference counts are atomic, so the source and its copies may be used on different threads.
    SyntaxGroup copy() const;

    static char const* getOCOSNamespaceName() noexcept;
    /// "SyntaxGroup".
    static char const* getOCOSClassName() noexcept;

private:
    std::u16string title;                                          ///< heading of the group
    SyntaxType::Value syntaxType = SyntaxType::getDefaultValue();  ///< kind of syntax the group lists
    std::vector<std::u16string> syntaxes;                          ///< the syntax lines, in page order
    mutable HostArrayPtr syntaxesCache;    ///< host string array standing for syntaxes; empty until first get or set
    mutable HostArrayPtr syntaxTypeCache;  ///< host object standing for syntaxType; empty until first get or set
};

}  // namespace reference::property
