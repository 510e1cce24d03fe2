#include "support/GlueValues.hpp"

#include "support/HostValues.hpp"

#include <algorithm>
#include <variant>

namespace testvalues {

void assign(glue::PropertyEntry const& entry, void* record, glue::HostValue const& value) {
    if (entry.kind == glue::PropertyKind::String)
        entry.strings().set(record, &std::get<std::u16string>(value));
    else if (entry.kind == glue::PropertyKind::Bool)
        entry.flag().set(record, std::get<bool>(value));
    else
        entry.arrays().set(record, std::get<HostArrayPtr>(value).get());
}

oxArray_tag const* cachedArray(glue::PropertyEntry const& entry, void const* record) {
    auto const* const access = std::get_if<glue::ArrayAccess>(&entry.access);
    return access == nullptr ? nullptr : access->get(record);
}

glue::HostValue distinctValue(glue::PropertyEntry const& entry) {
    std::u16string const text = u"value of " + std::u16string(entry.word.begin(), entry.word.end());
    switch (entry.kind) {
    case glue::PropertyKind::String: return text;
    case glue::PropertyKind::Bool: return true;
    case glue::PropertyKind::Enumeration: {
        // No class's default number equals the length of one of its property words.
        std::uint32_t const number = static_cast<std::uint32_t>(entry.word.size());
        return glue::constructEnumeration(*entry.enumeration, {&number, 1});
    }
    case glue::PropertyKind::StringList: {
        matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, 2));
        oxSetStringElement(array.get(), 0, text);
        oxSetStringElement(array.get(), 1, u"second");
        return HostArrayPtr(array.release(), false);
    }
    case glue::PropertyKind::ObjectArray: {
        glue::PropertyTable const& table = entry.elementTable();
        std::size_t const count = entry.word.size() % 3 + 1;
        matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, count, table.identity));
        for (std::size_t i = 0; i < count; ++i)
            omSetArrayElement(array.get(), i, glue::objectOf(glue::constructObject(table).get()));
        return HostArrayPtr(array.release(), false);
    }
    case glue::PropertyKind::Record: {
        glue::PropertyTable const& table = entry.elementTable();
        HostArrayPtr object = glue::constructObject(table);
        glue::PropertyEntry const& first = table.entries.front();
        glue::setProperty(*glue::objectOf(object.get()).get(), first.word, distinctValue(first));
        return object;
    }
    }
    return false;
}

bool ownsRecords(glue::PropertyTable const& table) {
    return std::any_of(table.entries.begin(), table.entries.end(), [](glue::PropertyEntry const& entry) {
        return entry.kind == glue::PropertyKind::ObjectArray || entry.kind == glue::PropertyKind::Record;
    });
}

}  // namespace testvalues
