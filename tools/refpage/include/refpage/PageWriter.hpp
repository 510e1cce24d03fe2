// Writing a page as canonical JSON: keys in table order, enumerations as numbers.
#pragma once

#include <ovrin/ocos.hpp>
#include <reference/glue/PropertyTable.hpp>
#include <refpage/Json.hpp>
#include <string>

namespace refpage {

/// Every property of a host object, read through its host getters.
Json recordToJson(ocos::COSInterface const& object, reference::glue::PropertyTable const& table);
/// The page held by a RefItem host object, read through the host getters.
Json pageToJson(oxArray_tag const* page);
/// The text the tool writes: one-space indent, UTF-8 kept as is.
std::string jsonText(Json const& json);

}  // namespace refpage
