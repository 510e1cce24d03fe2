// libFuzzer target: see the entry function.
#include "FuzzEntries.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    return refprop::fuzz::fuzzPageLoader(data, size);
}
