#include <ovrin/error.hpp>

namespace ovrin {

HostError::HostError(std::string const& message) : std::runtime_error(message) {}
HostError::~HostError() = default;

}  // namespace ovrin
