// stringToEnum of each enumeration class against three tables built over the
// same keys: a bare flat_map lower bound (the floor), std::unordered_map and std::map.
#include "support/AllocationCounter.hpp"
#include "support/EnumKeys.hpp"
#include "support/Registration.hpp"

#include <boost/container/flat_map.hpp>

#include <cctype>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

using namespace reference::property;
using bench::EnumKeys;

/// Every key once, in table order.
template <class Enumeration>
std::vector<std::string> allKeys() {
    std::vector<std::string> texts;
    for (auto const& [key, value] : EnumKeys<Enumeration>::keys) {
        texts.emplace_back(key);
    }
    return texts;
}

/// Each key followed by an unknown text next to it: the key capitalised (a display
/// text, never a key), or a blank for the empty key.
template <class Enumeration>
std::vector<std::string> halfUnknownKeys() {
    std::vector<std::string> texts;
    for (auto const& [key, value] : EnumKeys<Enumeration>::keys) {
        texts.emplace_back(key);
        std::string unknown(key.empty() ? std::string_view(" ") : key);
        unknown[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(unknown[0])));
        texts.push_back(unknown);
    }
    return texts;
}

template <class Enumeration>
struct LibraryLookup {
    std::uint32_t operator()(std::string_view key) const { return Enumeration::stringToEnum(key); }
};

/// The floor: the same sorted flat map the library keeps, searched inline.
template <class Enumeration>
struct FlatMapLookup {
    boost::container::flat_map<std::string_view, std::uint32_t, std::less<void>> table;
    FlatMapLookup() { table.insert(EnumKeys<Enumeration>::keys.begin(), EnumKeys<Enumeration>::keys.end()); }
    std::uint32_t operator()(std::string_view key) const {
        auto const found = table.lower_bound(key);
        return found == table.end() || found->first != key ? EnumKeys<Enumeration>::fallback : found->second;
    }
};

template <class Enumeration>
struct UnorderedMapLookup {
    std::unordered_map<std::string_view, std::uint32_t> table{EnumKeys<Enumeration>::keys.begin(),
                                                              EnumKeys<Enumeration>::keys.end()};
    std::uint32_t operator()(std::string_view key) const {
        auto const found = table.find(key);
        return found == table.end() ? EnumKeys<Enumeration>::fallback : found->second;
    }
};

template <class Enumeration>
struct OrderedMapLookup {
    std::map<std::string_view, std::uint32_t, std::less<>> table{EnumKeys<Enumeration>::keys.begin(),
                                                                 EnumKeys<Enumeration>::keys.end()};
    std::uint32_t operator()(std::string_view key) const {
        auto const found = table.find(key);
        return found == table.end() ? EnumKeys<Enumeration>::fallback : found->second;
    }
};

template <class Lookup>
void lookupEach(benchmark::State& state, std::vector<std::string> const& texts) {
    Lookup const lookup;
    std::vector<std::string_view> const keys(texts.begin(), texts.end());
    bench::AllocationMeter const meter;
    for (auto _ : state) {
        for (std::string_view key : keys) {
            benchmark::DoNotOptimize(lookup(key));
        }
    }
    meter.report(state, static_cast<double>(keys.size()));
    bench::reportTimePerOperation(state, static_cast<double>(keys.size()));
}

template <class Enumeration>
void registerClass() {
    std::string const prefix = "stringToEnum/" + std::string(EnumKeys<Enumeration>::name);
    for (auto const& [workload, texts] : {std::pair{"all_keys", allKeys<Enumeration>()},
                                          std::pair{"half_unknown", halfUnknownKeys<Enumeration>()}}) {
        std::string const base = prefix + "/" + workload + "/";
        bench::registerBenchmark(base + "library", [texts](benchmark::State& state) {
            lookupEach<LibraryLookup<Enumeration>>(state, texts);
        });
        bench::registerBenchmark(base + "flat_map_floor", [texts](benchmark::State& state) {
            lookupEach<FlatMapLookup<Enumeration>>(state, texts);
        });
        bench::registerBenchmark(base + "unordered_map", [texts](benchmark::State& state) {
            lookupEach<UnorderedMapLookup<Enumeration>>(state, texts);
        });
        bench::registerBenchmark(base + "std_map", [texts](benchmark::State& state) {
            lookupEach<OrderedMapLookup<Enumeration>>(state, texts);
        });
    }
}

int const registered = [] {
    registerClass<DeprecationStatus>();
    registerClass<FunctionType>();
    registerClass<RefEntityType>();
    registerClass<SyntaxType>();
    return 0;
}();

}  // namespace
