#include <refpage/format/PageTitle.hpp>
#include <refpage/support/Text.hpp>

namespace refpage {

std::string pageTitle(reference::property::RefItem const& page) {
    auto const& entities = page.getRefEntities();
    if (!entities.empty() && !entities.front().getName().empty()) return utf8(entities.front().getName());
    if (!page.getHref().empty()) return utf8(page.getHref());
    return "Untitled page";
}

}  // namespace refpage
