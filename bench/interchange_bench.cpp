// The interchange formats: writing and reading a Sphinx inventory of 2,300 entries (a
// doc set the corpus's size) and of 100,000; how long a 1 GiB decompression bomb takes
// to be refused at the 64 MiB cap; judging links by an inventory; generating the schema.
#include "support/Registration.hpp"

#include <refpage/interchange/ExternalInventories.hpp>
#include <refpage/interchange/InventoryReader.hpp>
#include <refpage/interchange/InventoryWriter.hpp>
#include <refpage/interchange/PageSchema.hpp>
#include <string>
#include <vector>

#include "../tests/support/InventoryFiles.hpp"

namespace {

using Type = reference::property::RefEntityType;

/// `count` entries shaped like a generated doc set's: a class, its constructor and three methods per page.
std::vector<refpage::InventoryEntry> entries(std::size_t count) {
    std::vector<refpage::InventoryEntry> out;
    Type::Value const types[] = {Type::Class, Type::Constructor, Type::Method, Type::Method, Type::Function};
    for (std::size_t i = 0; i < count; ++i) {
        std::string const page = "pkg.module" + std::to_string(i / 5);
        std::string const name = page + (i % 5 == 0 || i % 5 == 1 ? "" : ".member" + std::to_string(i % 5));
        out.push_back({name, types[i % 5], "reference/generated/" + page + ".html#" + name});
    }
    return out;
}

int const registered = [] {
    for (std::size_t const count : {2300U, 100000U}) {
        bench::registerBenchmark("interchange/inventory_write/" + std::to_string(count), [count](benchmark::State& state) {
            auto const list = entries(count);
            std::size_t bytes = 0;
            for (auto _ : state) bytes = refpage::inventoryBytes(list, {"Bench", "1"}).size();
            state.counters["file_bytes"] = static_cast<double>(bytes);
            bench::reportTimePerOperation(state, static_cast<double>(count));
        })->Unit(benchmark::kMillisecond);
        bench::registerBenchmark("interchange/inventory_read/" + std::to_string(count), [count](benchmark::State& state) {
            std::string const file = refpage::inventoryBytes(entries(count), {"Bench", "1"});
            for (auto _ : state) benchmark::DoNotOptimize(refpage::readInventory(file, "bench.inv"));
            bench::reportTimePerOperation(state, static_cast<double>(count));
        })->Unit(benchmark::kMillisecond);
    }
    // Everything a bomb costs a reader: 64 MiB inflated and scanned for lines, then refused.
    bench::registerBenchmark("interchange/inventory_bomb_refused", [](benchmark::State& state) {
        std::string const bomb = testvalues::inventoryBomb();
        for (auto _ : state) {
            try {
                refpage::readInventory(bomb, "bomb.inv");
            } catch (refpage::InventoryError const&) {
            }
        }
        state.counters["file_bytes"] = static_cast<double>(bomb.size());
    })->Unit(benchmark::kMillisecond);
    bench::registerBenchmark("interchange/external_link_resolve", [](benchmark::State& state) {
        refpage::ExternalInventories inventories;
        inventories.add("https://docs.example/", refpage::readInventory(refpage::inventoryBytes(entries(100000), {"B", "1"}), "b.inv"),
                        "b.inv");
        std::string const found = "https://docs.example/reference/generated/pkg.module77.html#pkg.module77.member3";
        std::string const missing = "https://docs.example/reference/generated/pkg.module77.html#pkg.module77.gone";
        bool flip = false;
        for (auto _ : state) benchmark::DoNotOptimize(inventories.resolve((flip = !flip) ? found : missing));
    });
    bench::registerBenchmark("interchange/schema", [](benchmark::State& state) {
        for (auto _ : state) benchmark::DoNotOptimize(refpage::pageSchemaText());
    })->Unit(benchmark::kMicrosecond);
    return 0;
}();

}  // namespace
