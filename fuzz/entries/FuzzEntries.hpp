// The fuzz entry functions, shared by the libFuzzer targets and the replay of
// kept crash inputs. Each returns 0 for every input it survives; a broken
// invariant aborts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace refprop::fuzz {

/// Feeds `data` to the page loader as one page document.
int fuzzPageLoader(std::uint8_t const* data, std::size_t size);

/// Interprets `data` as a program of host property operations on two pages.
int fuzzRefItemOperations(std::uint8_t const* data, std::size_t size);

/// One fuzz target: its name (the directory of its kept inputs) and its entry.
struct FuzzTarget {
    std::string_view name;
    int (*entry)(std::uint8_t const*, std::size_t);
};

/// Every fuzz target.
std::span<FuzzTarget const> fuzzTargets() noexcept;

}  // namespace refprop::fuzz
