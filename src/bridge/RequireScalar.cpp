#include <reference/property/RequireScalar.hpp>

namespace foundation::core::except {

template <class Key>
Exception<Key, std::exception, void>::Exception(Key const& key) : key_(key), id_(IMsgIDException::get_error_id(key_)) {}

template <class Key>
Exception<Key, std::exception, void>::Exception(Exception const& other)
    : IMsgIDException(other), std::exception(other), key_(other.key_), id_(other.id_) {}

template <class Key>
IException* Exception<Key, std::exception, void>::clone() const {
    return new Exception(*this);
}

template <class Key>
void Exception<Key, std::exception, void>::rethrow() const {
    throw Exception(*this);
}

template <class Key>
Exception<Key, std::exception, void>::~Exception() = default;

template <class Key>
char const* Exception<Key, std::exception, void>::what() const noexcept {
    return IException::what();
}

template <class Key>
std::string Exception<Key, std::exception, void>::GetID() const {
    return id_;
}

template <class Key>
msg::MessageKey const& Exception<Key, std::exception, void>::GetBaseMsgIDObj() const {
    return key_;
}

}  // namespace foundation::core::except

// The whole class is defined here, type information and virtual table included; it is
// exported by the visibility that the header's explicit instantiation declaration gives it.
template class foundation::core::except::Exception<component_Ovrin::catalog_class::key_RequireScalar, std::exception, void>;
