#include "FuzzEntries.hpp"

#include <array>

namespace refprop::fuzz {

std::span<FuzzTarget const> fuzzTargets() noexcept {
    static constexpr std::array targets{
        FuzzTarget{"page_loader", &fuzzPageLoader},
        FuzzTarget{"refitem_operations", &fuzzRefItemOperations},
    };
    return targets;
}

}  // namespace refprop::fuzz
