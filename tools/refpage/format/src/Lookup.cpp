#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/RecordProducer.hpp>
#include <refpage/format/Lookup.hpp>

namespace refpage {

using namespace reference::property;

RefItemLookup makeLookup(RefItem const& page) {
    auto const& entities = page.getRefEntities();
    RefEntity const none;
    RefEntity const& first = entities.empty() ? none : entities.front();
    return RecordProducer::makeRefItemLookup(first.getName(), first.getRefEntityType(), page.getPurpose(),
                                             page.getDeprecationStatus() != DeprecationStatus::Current, page.getHref(),
                                             first.getFunctionType());
}

}  // namespace refpage
