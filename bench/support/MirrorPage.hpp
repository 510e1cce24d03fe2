// Plain mirror structs of a reference page with the same strings, numbers and
// vectors as the records, compared by a defaulted operator==. `Text` chooses how
// strings compare: std::u16string (its three-way compare, the defaulted baseline)
// or BlockText (lengths, then the code units as one block: the floor).
#pragma once

#include <reference/property/RefItem.hpp>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace bench {

/// A UTF-16 text whose equality is "same length, then one memcmp of the code units".
struct BlockText {
    std::u16string text;  ///< the code units

    bool operator==(BlockText const& other) const noexcept {
        return text.size() == other.text.size() &&
               std::memcmp(text.data(), other.text.data(), text.size() * sizeof(char16_t)) == 0;
    }
};

template <class Text>
struct MirrorRefEntity {
    std::uint32_t refEntityType = 0;
    Text name;
    std::uint32_t functionType = 0;
    bool operator==(MirrorRefEntity const&) const = default;
};

template <class Text>
struct MirrorObjectInfo {
    Text name;
    Text purpose;
    std::vector<Text> values;
    Text href;
    bool operator==(MirrorObjectInfo const&) const = default;
};

template <class Text>
struct MirrorInput {
    std::uint32_t syntaxType = 0;
    bool isNameValuePair = false;
    Text defaultValue;
    MirrorObjectInfo<Text> info;
    bool operator==(MirrorInput const&) const = default;
};

template <class Text>
struct MirrorOutput {
    std::uint32_t syntaxType = 0;
    MirrorObjectInfo<Text> info;
    bool operator==(MirrorOutput const&) const = default;
};

/// Parameter and ClassProperty: a default value, then the common part.
template <class Text>
struct MirrorDefaulted {
    Text defaultValue;
    MirrorObjectInfo<Text> info;
    bool operator==(MirrorDefaulted const&) const = default;
};

template <class Text>
struct MirrorSyntaxGroup {
    Text title;
    std::uint32_t syntaxType = 0;
    std::vector<Text> syntaxes;
    bool operator==(MirrorSyntaxGroup const&) const = default;
};

template <class Text>
struct MirrorInputGroup {
    Text title;
    std::vector<MirrorInput<Text>> inputs;
    bool operator==(MirrorInputGroup const&) const = default;
};

template <class Text>
struct MirrorClassPropertyGroup {
    Text title;
    std::vector<MirrorDefaulted<Text>> classProperties;
    bool operator==(MirrorClassPropertyGroup const&) const = default;
};

template <class Text>
struct MirrorPair {
    Text first;
    Text second;
    bool operator==(MirrorPair const&) const = default;
};

template <class Text>
struct MirrorExample {
    Text url;
    Text openCommand;
    Text title;
    bool operator==(MirrorExample const&) const = default;
};

template <class Text>
struct MirrorPage {
    Text href;
    std::vector<MirrorRefEntity<Text>> refEntities;
    Text packageName;
    Text purpose;
    Text introducedIn;
    Text description;
    MirrorPair<Text> appThumbnail;
    std::uint32_t deprecationStatus = 0;
    std::vector<MirrorSyntaxGroup<Text>> syntaxGroups;
    std::vector<MirrorInputGroup<Text>> inputGroups;
    std::vector<MirrorOutput<Text>> outputs;
    std::vector<MirrorClassPropertyGroup<Text>> classPropertyGroups;
    std::vector<MirrorPair<Text>> seeAlso;
    std::vector<MirrorExample<Text>> examples;
    std::vector<MirrorDefaulted<Text>> parameters;
    bool operator==(MirrorPage const&) const = default;
};

/// The mirror of `page`, read through its native getters.
MirrorPage<std::u16string> mirrorOf(reference::property::RefItem const& page);
MirrorPage<BlockText> blockMirrorOf(reference::property::RefItem const& page);

/// Strings held by the page (every text field and list entry) and their total code units.
struct PageSize {
    std::size_t strings = 0;
    std::size_t codeUnits = 0;
};
PageSize sizeOf(reference::property::RefItem const& page);

}  // namespace bench
