#include <algorithm>
#include <ovrin/array.hpp>
#include <ovrin/ocos.hpp>
#include <reference/glue/Enumerations.hpp>
#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/SyntaxType.hpp>

namespace reference::glue {

namespace {

using namespace reference::property;

template <class Enumeration>
EnumerationInfo makeInfo(typename Enumeration::Value lastMember, std::string_view defaultKey) {
    EnumerationInfo info;
    info.qualifiedName = std::string(Enumeration::getOCOSNamespaceName()) + "." + Enumeration::getOCOSClassName();
    info.className = Enumeration::getOCOSClassName();
    info.identity = ocos::internal::makeInterned(info.qualifiedName);
    info.memberCount = static_cast<std::uint32_t>(lastMember) + 1;
    info.defaultKey = defaultKey;
    info.keyToValue = [](std::string_view key) -> std::uint32_t { return Enumeration::stringToEnum(key); };
    info.displayText = [](std::uint32_t value) {
        return Enumeration::enumToString(static_cast<typename Enumeration::Value>(value));
    };
    return info;
}

}  // namespace

bool EnumerationInfo::namesMember(std::string_view key) const {
    // Every text that is no key maps to the default, so only the default's own key may give it.
    std::uint32_t const value = keyToValue(key);
    return key == defaultKey || value != keyToValue(defaultKey);
}

template <>
EnumerationInfo const& enumerationInfo<DeprecationStatus>() {
    static EnumerationInfo const info = makeInfo<DeprecationStatus>(DeprecationStatus::Deny, "current");
    return info;
}

template <>
EnumerationInfo const& enumerationInfo<FunctionType>() {
    static EnumerationInfo const info = makeInfo<FunctionType>(FunctionType::NA, "n/a");
    return info;
}

template <>
EnumerationInfo const& enumerationInfo<RefEntityType>() {
    static EnumerationInfo const info = makeInfo<RefEntityType>(RefEntityType::Unknown, "");
    return info;
}

template <>
EnumerationInfo const& enumerationInfo<SyntaxType>() {
    static EnumerationInfo const info = makeInfo<SyntaxType>(SyntaxType::NA, "n/a");
    return info;
}

HostArrayPtr constructEnumeration(EnumerationInfo const& info, std::span<std::uint32_t const> values) {
    HostArrayPtr const numbers(matrix::detail::do_create_uninitnumeric(1, values.size(), oxUINT32_CLASS, false), false);
    if (!values.empty()) std::copy(values.begin(), values.end(), static_cast<std::uint32_t*>(oxGetData(numbers.get())));
    oxArray_tag const* const arguments[] = {numbers.get()};
    return HostArrayPtr(omConstructObjectWithClient(info.identity, 1, arguments, COSGetPublicClient()), false);
}

std::span<std::uint32_t const> enumerationValues(oxArray_tag const* object) {
    oxArray_tag const* const numbers = omGetUnderlyingArray(object);
    std::size_t const count = oxGetNumberOfElements(numbers);
    if (count == 0) return {};
    return {static_cast<std::uint32_t const*>(oxGetData(numbers)), count};
}

}  // namespace reference::glue
