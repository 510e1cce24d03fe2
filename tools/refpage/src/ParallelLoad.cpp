#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <refpage/ParallelLoad.hpp>
#include <thread>

namespace refpage {

std::vector<PageInput> entryInputs(std::span<PageEntry const> entries) {
    std::vector<PageInput> inputs;
    inputs.reserve(entries.size());
    for (auto const& entry : entries) inputs.push_back({entry.source(), std::nullopt, entry});
    return inputs;
}

unsigned threadCount(unsigned jobs) noexcept {
    if (jobs != 0) return jobs;
    return std::max(1U, std::thread::hardware_concurrency());
}

void forEachIndex(std::size_t count, unsigned jobs, std::function<void(std::size_t)> const& work) {
    std::size_t const threads = std::min<std::size_t>(threadCount(jobs), count);
    std::atomic<std::size_t> next{0};
    std::exception_ptr failure;
    std::mutex failureMutex;
    auto const run = [&] {
        for (std::size_t i = next++; i < count; i = next++) {
            try {
                work(i);
            } catch (...) {
                std::lock_guard const lock(failureMutex);
                if (!failure) failure = std::current_exception();
            }
        }
    };
    if (threads <= 1) {
        run();
    } else {
        std::vector<std::jthread> pool;
        pool.reserve(threads - 1);
        for (std::size_t t = 1; t < threads; ++t) pool.emplace_back(run);
        run();
    }  // the pool joins here
    if (failure) std::rethrow_exception(failure);
}

std::vector<LoadResult> loadPages(std::span<PageInput const> sources, unsigned jobs, LoadOptions const& options) {
    ensureHostClasses();
    std::vector<LoadResult> results(sources.size());
    forEachIndex(sources.size(), jobs, [&](std::size_t i) {
        PageInput const& input = sources[i];
        if (input.text) {
            results[i] = loadPage(*input.text, input.source, options);
            return;
        }
        std::string text;
        PageError error;
        if (readPageEntry(input.entry, text, error))
            results[i] = loadPage(text, input.source, options);
        else
            results[i].errors.push_back(std::move(error));
    });
    return results;
}

std::vector<DocSetPage> docSetPages(std::span<PageInput const> sources, std::span<LoadResult const> results) {
    std::vector<DocSetPage> pages;
    for (std::size_t i = 0; i < results.size() && i < sources.size(); ++i)
        if (results[i].ok())
            pages.push_back({sources[i].source, results[i].page, &nativePage(results[i].page.get())});
    return pages;
}

}  // namespace refpage
