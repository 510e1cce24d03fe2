// A read-only summary of a reference page, for looking pages up. Native only:
// no host identity, no host properties; filled by its producer.
#pragma once

#include <reference/property/Export.hpp>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>

#include <string>

namespace reference::property {

class RecordProducer;

class REFERENCE_PROPERTY_API RefItemLookup {
public:
    std::u16string const& getName() const;
    RefEntityType::Value getType() const;
    std::u16string const& getPurpose() const;
    bool isDeprecated() const;
    std::u16string const& getHref() const;
    FunctionType::Value getFunctionType() const;

    RefItemLookup copy() const;

private:
    friend class RecordProducer;

    std::u16string name;                                                 ///< the page's name
    RefEntityType::Value type = RefEntityType::getDefaultValue();        ///< kind of the page's entity
    std::u16string purpose;                                              ///< one-line purpose
    bool deprecated = false;                                             ///< true when the item is deprecated
    std::u16string href;                                                 ///< link to the page
    FunctionType::Value functionType = FunctionType::getDefaultValue();  ///< function type
};

}  // namespace reference::property
