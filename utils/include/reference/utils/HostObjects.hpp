// Host class identities and the one builder of host enumeration objects, shared
// by the records' properties and the glue. Inline: whoever includes it calls only
// the host operations named below, and no symbol is added to any library's interface.
#pragma once

#include <ovrin/array.hpp>
#include <ovrin/ocos.hpp>

#include <boost/intrusive_ptr.hpp>

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

namespace reference::utils {

/// The interned identity of the host class `qualifiedName`; the null identity for an empty name.
inline ocos::ClassIdentity internedIdentity(std::string const& qualifiedName) {
    return qualifiedName.empty() ? ocos::internal::nullValue() : ocos::internal::makeInterned(qualifiedName);
}

/// A new host object of the enumeration class named by `qualifiedName()`, made from a
/// 1-by-N unsigned 32-bit array of `numbers`; the result holds the object's only reference.
/// Host calls in order: do_create_uninitnumeric, COSGetPublicClient, makeInterned (the null
/// identity for an empty name, with no call), omConstructObjectWithClient, from_ovrin, then
/// the release of the temporary number array, which also runs when any step after the first throws.
template <class QualifiedName>
boost::intrusive_ptr<oxArray_tag const> constructEnumerationObject(std::span<std::uint32_t const> numbers,
                                                                   QualifiedName&& qualifiedName) {
    // The temporary's one reference is adopted, so every path below releases it.
    boost::intrusive_ptr<oxArray_tag const> argument(
        matrix::detail::do_create_uninitnumeric(1, numbers.size(), oxUINT32_CLASS, false), false);
    if (!numbers.empty())
        std::copy(numbers.begin(), numbers.end(), static_cast<std::uint32_t*>(oxGetData(argument.get())));

    ocos::COSClient* const client = COSGetPublicClient();
    ocos::ClassIdentity const identity = internedIdentity(std::forward<QualifiedName>(qualifiedName)());
    oxArray_tag const* const arguments[] = {argument.get()};
    boost::intrusive_ptr<oxArray_tag const> made(
        matrix::from_ovrin(omConstructObjectWithClient(identity, 1, arguments, client)).release(), false);

    argument.reset();
    return made;
}

}  // namespace reference::utils
