#include "bridge/EnumProperty.hpp"

#include <reference/property/RequireScalar.hpp>
#include <reference/utils/Properties.hpp>

#include <ovrin/array.hpp>
#include <ovrin/ocos.hpp>

#include <utility>

namespace reference::property::bridge {

namespace {

/// The exception is made from a key that dies before the throw.
RequireScalar makeRequireScalar() {
    component_Ovrin::catalog_class::key_RequireScalar const key;
    return RequireScalar(key);
}

}  // namespace

oxArray_tag const* accessEnumNumberCache(HostArrayPtr& cache, std::uint32_t number, std::string (*qualifiedName)()) {
    if (cache) return cache.get();

    // The temporary's one reference is adopted, so every path below releases it.
    HostArrayPtr argument(matrix::detail::do_create_uninitnumeric(1, 1, oxUINT32_CLASS, false), false);
    *static_cast<std::uint32_t*>(oxGetData(argument.get())) = number;

    ocos::COSClient* const client = COSGetPublicClient();
    std::string const name = qualifiedName();
    ocos::ClassIdentity const identity =
        name.empty() ? ocos::internal::nullValue() : ocos::internal::makeInterned(name);
    oxArray_tag const* const arguments[] = {argument.get()};
    HostArrayPtr made(matrix::from_ovrin(omConstructObjectWithClient(identity, 1, arguments, client)).release(), false);

    argument.reset();
    cache = std::move(made);
    return cache.get();
}

std::uint32_t readScalarNumber(oxArray_tag const* value) {
    if (omGetNumberOfElementsInUnderlyingArray(value) != 1) throw makeRequireScalar();
    return *static_cast<std::uint32_t const*>(oxGetData(omGetUnderlyingArray(value)));
}

void cacheAssignedValue(oxArray_tag const* value, HostArrayPtr& cache) {
    cache = reference::utils::copyOxArrayToSharedOxArrayPtr(value);
}

}  // namespace reference::property::bridge
