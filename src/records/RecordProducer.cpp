#include <reference/property/RecordProducer.hpp>

#include <utility>

namespace reference::property {

HeaderInfo RecordProducer::makeHeaderInfo(std::u16string productName, std::u16string baseCode,
                                          std::u16string helpFolder, std::u16string helpLocation) {
    HeaderInfo header;
    header.productName = std::move(productName);
    header.baseCode = std::move(baseCode);
    header.helpFolder = std::move(helpFolder);
    header.helpLocation = std::move(helpLocation);
    return header;
}

RefItemLookup RecordProducer::makeRefItemLookup(std::u16string name, RefEntityType::Value type,
                                                std::u16string purpose, bool deprecated, std::u16string href,
                                                FunctionType::Value functionType) {
    RefItemLookup lookup;
    lookup.name = std::move(name);
    lookup.type = type;
    lookup.purpose = std::move(purpose);
    lookup.deprecated = deprecated;
    lookup.href = std::move(href);
    lookup.functionType = functionType;
    return lookup;
}

}  // namespace reference::property
