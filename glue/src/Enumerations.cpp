#include <algorithm>
#include <array>
#include <ovrin/array.hpp>
#include <reference/glue/Enumerations.hpp>
#include <reference/property/DeprecationStatus.hpp>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/SyntaxType.hpp>
#include <reference/utils/HostObjects.hpp>

#include "HostClassName.hpp"

namespace reference::glue {

namespace {

using namespace reference::property;

#define REFERENCE_GLUE_MEMBER(Name, number, key, text) EnumerationMember{number, key, text},
#define REFERENCE_GLUE_DEFAULT_KEY(Name, number, key, text) key

/// Every member of `Enumeration` and its default member's key, expanded from the class's member list.
template <class Enumeration>
struct MemberList;

#define REFERENCE_GLUE_MEMBER_LIST(Class, MEMBERS)                                                              \
    template <>                                                                                                 \
    struct MemberList<Class> {                                                                                  \
        static constexpr EnumerationMember members[] = {MEMBERS(REFERENCE_GLUE_MEMBER, REFERENCE_GLUE_MEMBER)}; \
        static constexpr std::string_view defaultKey =                                                          \
            MEMBERS(REFERENCE_PROPERTY_SKIP_MEMBER, REFERENCE_GLUE_DEFAULT_KEY);                                \
    };

REFERENCE_GLUE_MEMBER_LIST(DeprecationStatus, REFERENCE_PROPERTY_DEPRECATION_STATUS_MEMBERS)
REFERENCE_GLUE_MEMBER_LIST(FunctionType, REFERENCE_PROPERTY_FUNCTION_TYPE_MEMBERS)
REFERENCE_GLUE_MEMBER_LIST(RefEntityType, REFERENCE_PROPERTY_REF_ENTITY_TYPE_MEMBERS)
REFERENCE_GLUE_MEMBER_LIST(SyntaxType, REFERENCE_PROPERTY_SYNTAX_TYPE_MEMBERS)

/// True when the members are numbered 0, 1, 2, ... in order, which hasMember and keyOf rely on.
constexpr bool numberedInOrder(std::span<EnumerationMember const> members) {
    for (std::size_t i = 0; i < members.size(); ++i)
        if (members[i].value != i) return false;
    return true;
}

template <class Enumeration>
EnumerationInfo makeInfo() {
    using List = MemberList<Enumeration>;
    static_assert(numberedInOrder(List::members), "members must be numbered 0, 1, 2, ... in order");
    EnumerationInfo info;
    info.qualifiedName = hostClassName<Enumeration>();
    info.className = Enumeration::getOCOSClassName();
    info.identity = ocos::internal::makeInterned(info.qualifiedName);
    info.members = List::members;
    info.memberCount = static_cast<std::uint32_t>(std::size(List::members));
    info.defaultKey = List::defaultKey;
    info.keyToValue = [](std::string_view key) -> std::uint32_t { return Enumeration::stringToEnum(key); };
    info.displayText = [](std::uint32_t value) {
        return Enumeration::enumToString(static_cast<typename Enumeration::Value>(value));
    };
    return info;
}

}  // namespace

bool EnumerationInfo::namesMember(std::string_view key) const noexcept {
    return std::any_of(members.begin(), members.end(), [key](EnumerationMember const& member) { return member.key == key; });
}

std::optional<std::string_view> EnumerationInfo::keyOf(std::uint32_t value) const noexcept {
    if (!hasMember(value)) return std::nullopt;
    return members[value].key;
}

template <class Enumeration>
EnumerationInfo const& enumerationInfo() {
    static EnumerationInfo const info = makeInfo<Enumeration>();
    return info;
}

template EnumerationInfo const& enumerationInfo<DeprecationStatus>();
template EnumerationInfo const& enumerationInfo<FunctionType>();
template EnumerationInfo const& enumerationInfo<RefEntityType>();
template EnumerationInfo const& enumerationInfo<SyntaxType>();

std::span<EnumerationInfo const* const> allEnumerations() {
    static std::array<EnumerationInfo const*, 4> const all{&enumerationInfo<DeprecationStatus>(),
                                                           &enumerationInfo<FunctionType>(),
                                                           &enumerationInfo<RefEntityType>(),
                                                           &enumerationInfo<SyntaxType>()};
    return all;
}

HostArrayPtr constructEnumeration(EnumerationInfo const& info, std::span<std::uint32_t const> values) {
    return utils::constructEnumerationObject(values, [&info]() -> std::string const& { return info.qualifiedName; });
}

std::span<std::uint32_t const> enumerationValues(oxArray_tag const* object) {
    oxArray_tag const* const numbers = omGetUnderlyingArray(object);
    std::size_t const count = oxGetNumberOfElements(numbers);
    if (count == 0) return {};
    return {static_cast<std::uint32_t const*>(oxGetData(numbers)), count};
}

}  // namespace reference::glue
