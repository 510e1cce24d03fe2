// The message of the host error an action throws.
#pragma once

#include <ovrin/error.hpp>

#include <string>

namespace testvalues {

/// What hostErrorOf gives for an action that throws no host error.
inline constexpr char const* noError = "no error";

/// Runs `call` and returns the message of the host error it throws, or `noError`.
template <class Call>
std::string hostErrorOf(Call&& call) {
    try {
        call();
    } catch (ovrin::HostError const& e) {
        return e.what();
    }
    return noError;
}

}  // namespace testvalues
