// Object construction through the public client: enumeration objects from
// unsigned 32-bit numbers, record objects from their class's default record.
#include "HostInternal.hpp"

#include <algorithm>

class ocos::COSClient {};

namespace {

ocos::COSClient publicClient;

oxArray_tag* constructEnumeration(ocos::COSClass const& cls, int nargs, oxArray_tag const* const* args) {
    if (nargs != 1 || args == nullptr || args[0] == nullptr)
        throw ovrin::HostError("omConstructObjectWithClient: expected one uint32 array argument for enumeration class '" +
                               cls.name() + "', found " + std::to_string(nargs) + " argument(s)" +
                               (nargs == 1 ? " that is null" : ""));
    oxArray_tag const& numbers = *args[0];
    if (numbers.classId != oxUINT32_CLASS || numbers.complex)
        throw ovrin::HostError("omConstructObjectWithClient: expected a real uint32 array for enumeration class '" +
                               cls.name() + "', found " + ovrin::host::describe(numbers));
    matrix::unique_array copy(ovrin::host::createNumeric(numbers.rows, numbers.columns, oxUINT32_CLASS, false));
    std::ranges::copy(numbers.words(), copy->words().begin());
    oxArray_tag* const object = oxArray_tag::create(oxOBJECT_CLASS, 1, 1, oxArray_tag::Payload::None, 0);
    object->objectClass = &cls;
    object->underlying = copy.release();
    return object;
}

oxArray_tag* constructRecord(ocos::COSClass const& cls, int nargs) {
    if (nargs != 0)
        throw ovrin::HostError("omConstructObjectWithClient: expected no arguments for record class '" + cls.name() +
                               "', found " + std::to_string(nargs));
    ocos::ClassDefinition const& definition = cls.definition();
    if (definition.makeDefault == nullptr)
        throw ovrin::HostError("omConstructObjectWithClient: expected record class '" + cls.name() +
                               "' to have a default record, found none");
    void* const record = definition.makeDefault();
    ocos::COSInterfacePtr object;
    try {
        object = ocos::makeObject(cls, record);
    } catch (...) {
        definition.dispose(record);
        throw;
    }
    oxArray_tag* const array = ovrin::host::createObjectArray(1, 1, cls);
    array->objects()[0] = std::move(object);
    return array;
}

}  // namespace

ocos::COSClient* COSGetPublicClient() {
    ovrin::host::enter("COSGetPublicClient");
    return &publicClient;
}

oxArray_tag* omConstructObjectWithClient(ocos::ClassIdentity cls, int nargs, oxArray_tag const* const* args,
                                         ocos::COSClient* client) {
    ovrin::host::enter("omConstructObjectWithClient");
    if (client != &publicClient)
        throw ovrin::HostError(std::string("omConstructObjectWithClient: expected the public client, found ") +
                               (client == nullptr ? "null" : "another client"));
    ocos::COSClass const& c = *ovrin::host::findClass(cls);
    return c.isEnumeration() ? constructEnumeration(c, nargs, args) : constructRecord(c, nargs);
}
