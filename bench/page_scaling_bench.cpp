// How parsing and checking a page scale with its shape: keys in one object,
// elements in one array, nesting depth, page size and one long text. Each
// shape is generated at growing sizes; the figures are CPU time per input byte
// (flat across sizes when time is linear) and the peak of bytes held per input
// byte (the goal for check: at most 6).
#include "support/AllocationCounter.hpp"
#include "support/Registration.hpp"

#include <fmt/format.h>

#include <refpage/format/Check.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/format/Parser.hpp>
#include <string>
#include <vector>

namespace {

/// One object holding `count` keys of no record (reported, at most maxReported of them).
std::string manyKeys(std::size_t count) {
    std::string text = "{";
    for (std::size_t i = 0; i < count; ++i) text += fmt::format("{}\"key{}\": {}", i == 0 ? "" : ",", i, i);
    return text + "}";
}

/// A page whose RefEntities array holds `count` small records.
std::string manyElements(std::size_t count) {
    std::string text = R"({"Href": "demo/entities.html", "RefEntities": [)";
    for (std::size_t i = 0; i < count; ++i)
        text += fmt::format(R"({}{{"Name": "demo.entity{}", "RefEntityType": "function", "FunctionType": "simple"}})",
                            i == 0 ? "" : ",", i);
    return text + "]}";
}

/// About `size` bytes of arrays nested `depth` deep under a key of no record.
std::string deepNesting(std::size_t depth, std::size_t size) {
    std::string const one = std::string(depth, '[') + "1" + std::string(depth, ']');
    std::string text = R"({"Nested": [)";
    for (std::size_t i = 0; text.size() < size; ++i) text += (i == 0 ? "" : ",") + one;
    return text + "]}";
}

/// A page of about `size` bytes of realistic records: input groups of twenty inputs each.
std::string realisticPage(std::size_t size) {
    std::string text = R"({"Href": "demo/records.html", "RefEntities": [{"Name": "demo.records"}], "InputGroups": [)";
    for (std::size_t group = 0; text.size() < size; ++group) {
        text += fmt::format(R"({}{{"Title": "Group {}", "Inputs": [)", group == 0 ? "" : ",", group);
        for (std::size_t i = 0; i < 20; ++i)
            text += fmt::format(
                R"({}{{"Name": "arg{}", "Purpose": "What the function reads: any array_like of numbers.", )"
                R"("Values": ["array_like", "scalar"], "Href": "demo/records.html#arg{}", "SyntaxType": "usage", )"
                R"("DefaultValue": "None", "IsNameValuePair": {}}})",
                i == 0 ? "" : ",", i, i, i % 2 == 0 ? "true" : "false");
        text += "]}";
    }
    return text + "]}";
}

/// A page whose Description is one text of `size` bytes.
std::string longText(std::size_t size) {
    return R"({"Href": "demo/long.html", "Description": ")" + std::string(size, 'd') + "\"}";
}

/// Runs `step(text)` on the text; reports time and peak bytes held per input byte.
template <class Step>
void perByte(benchmark::State& state, std::string const& text, Step step) {
    refpage::ensureHostClasses();
    double peak = 0;
    for (auto _ : state) {
        bench::resetPeakBytes();
        std::int64_t const before = bench::liveBytes();
        step(text);
        peak = std::max(peak, static_cast<double>(bench::peakBytes() - before));
    }
    auto const bytes = static_cast<double>(text.size());
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(text.size()));
    state.counters["input_bytes"] = bytes;
    state.counters["sec_per_byte"] =
        benchmark::Counter(bytes, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["peak_per_byte"] = peak / bytes;
}

void parse(std::string const& text) {
    refpage::ParsedPage const page = refpage::parsePage(text, "bench.json");
    benchmark::DoNotOptimize(page.root.assignments.data());
}

void check(std::string const& text) {
    refpage::CheckReport const report = refpage::checkPage(text, "bench.json");
    benchmark::DoNotOptimize(report.failures.data());
}

/// The baseline of the memory hierarchy: copy() of the loaded page does work linear in the
/// page by construction, so any rise of its time per byte with size is the caches' alone.
void copyLoaded(benchmark::State& state, std::string const& text) {
    refpage::LoadResult const loaded = refpage::loadPage(text, "bench.json");
    if (!loaded.ok()) {
        state.SkipWithError("the page did not load");
        return;
    }
    reference::property::RefItem const& page = refpage::nativePage(loaded.page.get());
    perByte(state, text, [&page](std::string const&) {
        reference::property::RefItem const copy = page.copy();
        benchmark::DoNotOptimize(&copy);
    });
}

template <class Make>
void registerShape(std::string const& shape, std::vector<std::size_t> const& sizes, Make make, bool checked) {
    for (std::size_t const size : sizes) {
        auto const text = std::make_shared<std::string>(make(size));
        if (shape == "page_bytes")
            bench::registerBenchmark(fmt::format("page_scaling/copy/{}/{}", shape, size),
                                     [text](benchmark::State& state) { copyLoaded(state, *text); });
        bench::registerBenchmark(fmt::format("page_scaling/parse/{}/{}", shape, size),
                                 [text](benchmark::State& state) { perByte(state, *text, parse); });
        if (checked)
            bench::registerBenchmark(fmt::format("page_scaling/check/{}/{}", shape, size),
                                     [text](benchmark::State& state) { perByte(state, *text, check); });
    }
}

int const registered = [] {
    registerShape("keys_per_object", {1000, 10000, 100000}, manyKeys, false);
    registerShape("elements_per_array", {1000, 10000, 100000}, manyElements, true);
    registerShape("nesting_depth", {4, 16, 62}, [](std::size_t depth) { return deepNesting(depth, 1 << 20); }, false);
    registerShape("page_bytes", {1 << 16, 1 << 20, 1 << 23, 1 << 25}, realisticPage, true);
    registerShape("text_bytes", {1 << 16, 1 << 20, 1 << 23}, longText, true);
    return 0;
}();

}  // namespace
