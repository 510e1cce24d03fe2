// The one way for producers of pages to fill what has no setter: a header's
// base code and the lookup summaries.
#pragma once

#include <reference/property/Export.hpp>
#include <reference/property/FunctionType.hpp>
#include <reference/property/HeaderInfo.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/RefItemLookup.hpp>

#include <string>

namespace reference::property {

class REFERENCE_PROPERTY_API RecordProducer {
public:
    RecordProducer() = delete;

    static HeaderInfo makeHeaderInfo(std::u16string productName, std::u16string baseCode, std::u16string helpFolder,
                                     std::u16string helpLocation);
    static RefItemLookup makeRefItemLookup(std::u16string name, RefEntityType::Value type, std::u16string purpose,
                                           bool deprecated, std::u16string href, FunctionType::Value functionType);
};

}  // namespace reference::property
