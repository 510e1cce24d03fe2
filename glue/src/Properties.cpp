#include <reference/glue/Properties.hpp>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace reference::glue {

namespace {

PropertyEntry const& entryOf(PropertyTable const& table, std::string_view word) {
    PropertyEntry const* const entry = table.find(word);
    if (entry == nullptr)
        throw std::out_of_range(table.qualifiedName + " has no property \"" + std::string(word) + "\"");
    return *entry;
}

template <class Expected>
Expected const& valueAs(HostValue const& value, PropertyEntry const& entry) {
    Expected const* const held = std::get_if<Expected>(&value);
    if (held == nullptr)
        throw std::invalid_argument("property \"" + std::string(entry.word) + "\" takes " +
                                    std::string(describeKind(entry.kind)));
    return *held;
}

}  // namespace

PropertyTable const& tableOf(ocos::COSInterface const& object) {
    ocos::ClassIdentity const identity = object.getClass().identity();
    for (PropertyTable const* table : allTables())
        if (table->identity == identity) return *table;
    throw std::invalid_argument("host class " + object.getClass().name() + " has no property table");
}

void* recordOf(ocos::COSInterface const& object, PropertyTable const& table) {
    return object.getData(*table.nativeType);
}

HostValue getProperty(ocos::COSInterface const& object, std::string_view word) {
    PropertyTable const& table = tableOf(object);
    PropertyEntry const& entry = entryOf(table, word);
    void const* const record = recordOf(object, table);
    return std::visit(
        [record](auto const& access) -> HostValue {
            using Access = std::decay_t<decltype(access)>;
            if constexpr (std::is_same_v<Access, ArrayAccess>)
                return property::HostArrayPtr(access.get(record));  // a reference of the caller's own
            else
                return access.get(record);
        },
        entry.access);
}

void setProperty(ocos::COSInterface const& object, std::string_view word, HostValue const& value) {
    PropertyTable const& table = tableOf(object);
    PropertyEntry const& entry = entryOf(table, word);
    void* const record = recordOf(object, table);
    std::visit(
        [&](auto const& access) {
            using Access = std::decay_t<decltype(access)>;
            if constexpr (std::is_same_v<Access, StringAccess>)
                access.set(record, &valueAs<std::u16string>(value, entry));
            else if constexpr (std::is_same_v<Access, BoolAccess>)
                access.set(record, valueAs<bool>(value, entry));
            else
                access.set(record, valueAs<property::HostArrayPtr>(value, entry).get());
        },
        entry.access);
}

ocos::COSInterfacePtr objectOf(oxArray_tag const* array) {
    return omGetArrayElement(array, 0);
}

property::HostArrayPtr constructObject(PropertyTable const& table) {
    return property::HostArrayPtr(omConstructObjectWithClient(table.identity, 0, nullptr, COSGetPublicClient()), false);
}

}  // namespace reference::glue
