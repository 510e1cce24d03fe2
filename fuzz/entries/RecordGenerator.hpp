// Records of every class, made from fuzz input through their host setters by
// the glue's property tables, the way the host fills them.
#pragma once

#include "ByteReader.hpp"

#include <reference/glue/Properties.hpp>

#include <string>

namespace refprop::fuzz {

namespace glue = reference::glue;
using reference::property::HostArrayPtr;

/// Longest text a generated field holds, in code units.
inline constexpr std::size_t maxTextUnits = 24;
/// Most elements a generated list holds.
inline constexpr std::size_t maxListElements = 4;

class RecordGenerator {
public:
    explicit RecordGenerator(ByteReader& input) noexcept : input_(input) {}

    /// A 1-by-N host object array of `minimum` to `maxListElements` records of `table`'s class.
    HostArrayPtr objectArray(glue::PropertyTable const& table, std::size_t minimum = 0) {
        std::size_t const count = minimum + input_.choose(maxListElements + 1 - minimum);
        matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, count, table.identity));
        for (std::size_t i = 0; i < count; ++i) omSetArrayElement(array.get(), i, glue::objectOf(object(table).get()));
        return HostArrayPtr(array.release(), false);
    }

    /// A host object of `table`'s class with every property set from the input.
    HostArrayPtr object(glue::PropertyTable const& table) {
        HostArrayPtr object = glue::constructObject(table);
        for (glue::PropertyEntry const& entry : table.entries)
            glue::setProperty(*glue::objectOf(object.get()).get(), entry.word, value(entry));
        return object;
    }

    /// A text of at most `maxTextUnits` code units.
    std::u16string text() { return input_.text(maxTextUnits); }

    /// A value of `entry`'s kind; enumeration values stand on any 32-bit number, members or not.
    glue::HostValue value(glue::PropertyEntry const& entry) {
        switch (entry.kind) {
        case glue::PropertyKind::String: return text();
        case glue::PropertyKind::Bool: return input_.flag();
        case glue::PropertyKind::Enumeration: {
            std::uint32_t const number = input_.number();
            return glue::constructEnumeration(*entry.enumeration, {&number, 1});
        }
        case glue::PropertyKind::StringList: {
            matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, input_.choose(maxListElements + 1)));
            for (std::size_t i = 0; i < oxGetNumberOfElements(array.get()); ++i)
                oxSetStringElement(array.get(), i, text());
            return HostArrayPtr(array.release(), false);
        }
        case glue::PropertyKind::ObjectArray: return objectArray(entry.elementTable());
        case glue::PropertyKind::Record: return object(entry.elementTable());
        }
        return false;
    }

private:
    ByteReader& input_;
};

}  // namespace refprop::fuzz
