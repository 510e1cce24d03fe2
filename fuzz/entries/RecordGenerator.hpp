// Records of every element class, made from fuzz input through their host
// setters, the way the host fills them.
#pragma once

#include "ByteReader.hpp"
#include "HostArrays.hpp"

#include <reference/property/AppThumbnail.hpp>
#include <reference/property/ClassProperty.hpp>
#include <reference/property/ClassPropertyGroup.hpp>
#include <reference/property/Example.hpp>
#include <reference/property/HostArray.hpp>
#include <reference/property/Input.hpp>
#include <reference/property/InputGroup.hpp>
#include <reference/property/Output.hpp>
#include <reference/property/Parameter.hpp>
#include <reference/property/RefEntity.hpp>
#include <reference/property/SeeAlso.hpp>
#include <reference/property/SyntaxGroup.hpp>

#include <string>
#include <type_traits>
#include <vector>

namespace refprop::fuzz {

namespace rp = reference::property;

/// Longest text a generated field holds, in code units.
inline constexpr std::size_t maxTextUnits = 24;
/// Most elements a generated list holds.
inline constexpr std::size_t maxListElements = 4;

class RecordGenerator {
public:
    explicit RecordGenerator(ByteReader& input) noexcept : input_(input) {}

    rp::RefEntity refEntity();
    rp::AppThumbnail appThumbnail();
    rp::SyntaxGroup syntaxGroup();
    rp::Input input();
    rp::InputGroup inputGroup();
    rp::Output output();
    rp::ClassProperty classProperty();
    rp::ClassPropertyGroup classPropertyGroup();
    rp::SeeAlso seeAlso();
    rp::Example example();
    rp::Parameter parameter();

    /// A record of class `T`.
    template <class T>
    T make();

    /// Up to `maxListElements` records of class `T`.
    template <class T>
    std::vector<T> makeList() {
        std::vector<T> records(input_.choose(maxListElements + 1));
        for (T& record : records) record = make<T>();
        return records;
    }

    /// A text of at most `maxTextUnits` code units.
    std::u16string text() { return input_.text(maxTextUnits); }

    /// A scalar host enumeration object of `Enum` holding any 32-bit number, members or not.
    template <class Enum>
    HostArrayPtr enumValue() {
        return enumObject(hostClassName<Enum>(), {input_.number()});
    }

private:
    void fillObjectInfo(rp::ObjectInfo& info);
    /// A host string array of up to `maxListElements` texts.
    HostArrayPtr textList();

    ByteReader& input_;
};

template <class T>
T RecordGenerator::make() {
    if constexpr (std::is_same_v<T, rp::RefEntity>) return refEntity();
    else if constexpr (std::is_same_v<T, rp::AppThumbnail>) return appThumbnail();
    else if constexpr (std::is_same_v<T, rp::SyntaxGroup>) return syntaxGroup();
    else if constexpr (std::is_same_v<T, rp::Input>) return input();
    else if constexpr (std::is_same_v<T, rp::InputGroup>) return inputGroup();
    else if constexpr (std::is_same_v<T, rp::Output>) return output();
    else if constexpr (std::is_same_v<T, rp::ClassProperty>) return classProperty();
    else if constexpr (std::is_same_v<T, rp::ClassPropertyGroup>) return classPropertyGroup();
    else if constexpr (std::is_same_v<T, rp::SeeAlso>) return seeAlso();
    else if constexpr (std::is_same_v<T, rp::Example>) return example();
    else return parameter();
}

}  // namespace refprop::fuzz
