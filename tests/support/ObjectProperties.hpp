// The object-array properties of the records that own them, as type tables the
// tests and the fuzz entries iterate over. Shared by the tests and the fuzz entries.
#pragma once

#include <reference/property/ClassPropertyGroup.hpp>
#include <reference/property/InputGroup.hpp>
#include <reference/property/RefItem.hpp>

#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

namespace testvalues {

namespace rp = reference::property;

/// One object-array property: owner class, element class, native getter, host getter and setter.
template <class R, class T, auto Native, auto Get, auto Set>
struct ObjectProperty {
    using Record = R;
    using Element = T;
    static constexpr auto native = Native;
    static constexpr auto get = Get;
    static constexpr auto set = Set;
    /// True for the one single-record property (the thumbnail): a scalar object, element 0 kept.
    static constexpr bool single = std::is_same_v<T, rp::AppThumbnail>;
};

template <class T, auto Native, auto Get, auto Set>
using PageProperty = ObjectProperty<rp::RefItem, T, Native, Get, Set>;

/// The page's nine record properties, in page order.
using PageObjectProperties = std::tuple<
    PageProperty<rp::RefEntity, &rp::RefItem::getRefEntities, &rp::RefItem::getRefEntitiesProperty,
                 &rp::RefItem::setRefEntitiesProperty>,
    PageProperty<rp::AppThumbnail, &rp::RefItem::getAppThumbnail, &rp::RefItem::getAppThumbnailProperty,
                 &rp::RefItem::setAppThumbnailProperty>,
    PageProperty<rp::SyntaxGroup, &rp::RefItem::getSyntaxGroups, &rp::RefItem::getSyntaxGroupsProperty,
                 &rp::RefItem::setSyntaxGroupProperty>,
    PageProperty<rp::InputGroup, &rp::RefItem::getInputGroups, &rp::RefItem::getInputGroupsProperty,
                 &rp::RefItem::setInputGroupsProperty>,
    PageProperty<rp::Output, &rp::RefItem::getOutputs, &rp::RefItem::getOutputsProperty,
                 &rp::RefItem::setOutputsProperty>,
    PageProperty<rp::ClassPropertyGroup, &rp::RefItem::getClassPropertyGroups,
                 &rp::RefItem::getClassPropertyGroupsProperty, &rp::RefItem::setClassPropertyGroupsProperty>,
    PageProperty<rp::SeeAlso, &rp::RefItem::getSeeAlsoInfo, &rp::RefItem::getSeeAlsoProperty,
                 &rp::RefItem::setSeeAlsoProperty>,
    PageProperty<rp::Example, &rp::RefItem::getExamples, &rp::RefItem::getExamplesProperty,
                 &rp::RefItem::setExamplesProperty>,
    PageProperty<rp::Parameter, &rp::RefItem::getParameters, &rp::RefItem::getParametersProperty,
                 &rp::RefItem::setParametersProperty>>;

/// The two groups' element lists.
using GroupObjectProperties = std::tuple<
    ObjectProperty<rp::InputGroup, rp::Input, &rp::InputGroup::getInputs, &rp::InputGroup::getInputsProperty,
                   &rp::InputGroup::setInputsProperty>,
    ObjectProperty<rp::ClassPropertyGroup, rp::ClassProperty, &rp::ClassPropertyGroup::getClassProperties,
                   &rp::ClassPropertyGroup::getPropertiesProperty, &rp::ClassPropertyGroup::setPropertiesProperty>>;

inline constexpr std::size_t pageObjectPropertyCount = std::tuple_size_v<PageObjectProperties>;

/// Calls `visit` with a default-constructed value of every property of `Properties`, in order.
template <class Properties, class Visitor>
void forEachProperty(Visitor&& visit) {
    std::apply([&](auto... property) { (visit(property), ...); }, Properties{});
}

/// Calls `visit` with a default-constructed value of the `index`-th property of `Properties`.
template <class Properties, class Visitor>
void visitProperty(std::size_t index, Visitor&& visit) {
    std::size_t i = 0;
    forEachProperty<Properties>([&](auto property) {
        if (i++ == index) visit(property);
    });
}

}  // namespace testvalues
