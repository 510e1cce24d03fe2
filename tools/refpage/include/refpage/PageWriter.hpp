// Writing a page as canonical JSON: keys in table order, enumerations as numbers.
#pragma once

#include <ovrin/ocos.hpp>
#include <reference/glue/PropertyTable.hpp>
#include <reference/property/RefItem.hpp>
#include <refpage/Json.hpp>
#include <refpage/PageDocument.hpp>
#include <string>

namespace refpage {

/// Every property of a host object, read through its host getters.
Json recordToJson(ocos::COSInterface const& object, reference::glue::PropertyTable const& table);
/// The page held by a RefItem host object, read through the host getters.
Json pageToJson(oxArray_tag const* page);
/// The page read through the native getters.
Json nativePageToJson(reference::property::RefItem const& page);
/// A record of `table`'s class as constructed: every key in table order, with empty
/// texts and lists, false, and the class's default enumeration value.
Json initialRecordJson(reference::glue::PropertyTable const& table);
/// A parsed page in the same form, every key in table order (what a read-back must
/// match): the keys the page gave with their values, the others with their initial values.
Json documentToJson(PageNode const& node);

/// The text the tool writes: one-space indent, UTF-8 kept as is.
std::string jsonText(Json const& json);

}  // namespace refpage
