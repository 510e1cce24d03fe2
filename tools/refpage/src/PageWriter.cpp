#include <ovrin/array.hpp>
#include <reference/glue/Properties.hpp>
#include <refpage/PageWriter.hpp>
#include <utf8.h>

namespace refpage {

namespace {

using reference::glue::PropertyKind;
using reference::glue::PropertyTable;

/// One number for a scalar, an array for any other count.
template <class Numbers>
Json enumerationJson(Numbers const& values) {
    if (values.size() == 1) return Json(values[0]);
    Json list = Json::array();
    for (std::uint32_t const value : values) list.push_back(value);
    return list;
}

Json stringArrayJson(oxArray_tag const* array) {
    Json list = Json::array();
    std::size_t const count = oxGetNumberOfElements(array);
    for (std::size_t i = 0; i < count; ++i) list.push_back(utf8::utf16to8(oxGetStringElement(array, i)));
    return list;
}

}  // namespace

Json recordToJson(ocos::COSInterface const& object, PropertyTable const& table) {
    void const* const record = reference::glue::recordOf(object, table);
    Json json = Json::object();
    for (auto const& entry : table.entries) {
        Json& slot = json[std::string(entry.word)];
        switch (entry.kind) {
            case PropertyKind::String: slot = utf8::utf16to8(entry.strings().get(record)); break;
            case PropertyKind::Bool: slot = entry.flag().get(record); break;
            case PropertyKind::Enumeration:
                slot = enumerationJson(reference::glue::enumerationValues(entry.arrays().get(record)));
                break;
            case PropertyKind::StringList: slot = stringArrayJson(entry.arrays().get(record)); break;
            case PropertyKind::ObjectArray: {
                oxArray_tag const* const array = entry.arrays().get(record);
                PropertyTable const& elementTable = entry.elementTable();
                std::size_t const count = oxGetNumberOfElements(array);
                slot = Json::array();
                for (std::size_t i = 0; i < count; ++i)
                    slot.push_back(recordToJson(*omGetArrayElement(array, i).get(), elementTable));
                break;
            }
            case PropertyKind::Record:
                slot = recordToJson(*omGetArrayElement(entry.arrays().get(record), 0).get(), entry.elementTable());
                break;
        }
    }
    return json;
}

Json pageToJson(oxArray_tag const* page) {
    ocos::COSInterfacePtr const object = reference::glue::objectOf(page);
    return recordToJson(*object.get(), reference::glue::tableOf(*object.get()));
}

std::string jsonText(Json const& json) {
    return json.dump(1, ' ', false, Json::error_handler_t::strict);
}

}  // namespace refpage
