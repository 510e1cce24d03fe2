// The host properties of a page, as tables the fuzz program picks from.
#pragma once

#include <reference/property/RefItem.hpp>

#include <cstddef>
#include <string>
#include <tuple>
#include <utility>

namespace refprop::fuzz {

namespace rp = reference::property;

/// One object-array property of RefItem: element class, native getter, host getter and setter.
template <class T, auto Native, auto Get, auto Set>
struct ObjectProperty {
    using Element = T;
    static constexpr auto native = Native;
    static constexpr auto get = Get;
    static constexpr auto set = Set;
    /// True for the one single-record property (the thumbnail).
    static constexpr bool single = std::is_same_v<T, rp::AppThumbnail>;
};

using ObjectProperties = std::tuple<
    ObjectProperty<rp::RefEntity, &rp::RefItem::getRefEntities, &rp::RefItem::getRefEntitiesProperty,
                   &rp::RefItem::setRefEntitiesProperty>,
    ObjectProperty<rp::AppThumbnail, &rp::RefItem::getAppThumbnail, &rp::RefItem::getAppThumbnailProperty,
                   &rp::RefItem::setAppThumbnailProperty>,
    ObjectProperty<rp::SyntaxGroup, &rp::RefItem::getSyntaxGroups, &rp::RefItem::getSyntaxGroupsProperty,
                   &rp::RefItem::setSyntaxGroupProperty>,
    ObjectProperty<rp::InputGroup, &rp::RefItem::getInputGroups, &rp::RefItem::getInputGroupsProperty,
                   &rp::RefItem::setInputGroupsProperty>,
    ObjectProperty<rp::Output, &rp::RefItem::getOutputs, &rp::RefItem::getOutputsProperty,
                   &rp::RefItem::setOutputsProperty>,
    ObjectProperty<rp::ClassPropertyGroup, &rp::RefItem::getClassPropertyGroups,
                   &rp::RefItem::getClassPropertyGroupsProperty, &rp::RefItem::setClassPropertyGroupsProperty>,
    ObjectProperty<rp::SeeAlso, &rp::RefItem::getSeeAlsoInfo, &rp::RefItem::getSeeAlsoProperty,
                   &rp::RefItem::setSeeAlsoProperty>,
    ObjectProperty<rp::Example, &rp::RefItem::getExamples, &rp::RefItem::getExamplesProperty,
                   &rp::RefItem::setExamplesProperty>,
    ObjectProperty<rp::Parameter, &rp::RefItem::getParameters, &rp::RefItem::getParametersProperty,
                   &rp::RefItem::setParametersProperty>>;

inline constexpr std::size_t objectPropertyCount = std::tuple_size_v<ObjectProperties>;

/// Calls `visit` with a default-constructed value of the `index`-th object property.
template <class Visitor>
void visitObjectProperty(std::size_t index, Visitor&& visit) {
    [&]<std::size_t... I>(std::index_sequence<I...>) {
        static_cast<void>(((index == I ? (visit(std::tuple_element_t<I, ObjectProperties>{}), true) : false) || ...));
    }(std::make_index_sequence<objectPropertyCount>{});
}

/// One string property of RefItem: native getter, host getter and setter.
struct StringProperty {
    std::u16string const& (rp::RefItem::*native)() const;
    std::u16string const& (rp::RefItem::*get)() const;
    void (rp::RefItem::*set)(std::u16string const*);
};

inline constexpr StringProperty stringProperties[] = {
    {&rp::RefItem::getHref, &rp::RefItem::getHrefProperty, &rp::RefItem::setHrefProperty},
    {&rp::RefItem::getPackageName, &rp::RefItem::getPackageNameProperty, &rp::RefItem::setPackageNameProperty},
    {&rp::RefItem::getPurpose, &rp::RefItem::getPurposeProperty, &rp::RefItem::setPurposeProperty},
    {&rp::RefItem::getIntroduced, &rp::RefItem::getIntroducedInProperty, &rp::RefItem::setIntroducedInProperty},
    {&rp::RefItem::getDescription, &rp::RefItem::getDescriptionProperty, &rp::RefItem::setDescriptionProperty},
};

}  // namespace refprop::fuzz
