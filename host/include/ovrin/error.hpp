// The one exception type that the host runtime throws for its own failures:
// misuse by a caller (wrong class, index out of range, unknown class) and
// injected faults alike.
#pragma once

#include <ovrin/export.hpp>

#include <stdexcept>
#include <string>

namespace ovrin {

/// A host failure. The message names what was expected and what was found.
class OVRIN_HOST_API HostError : public std::runtime_error {
public:
    explicit HostError(std::string const& message);
    HostError(HostError const&) = default;
    HostError& operator=(HostError const&) = default;
    ~HostError() override;
};

}  // namespace ovrin
