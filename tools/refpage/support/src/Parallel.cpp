#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <refpage/support/Parallel.hpp>
#include <thread>
#include <vector>

namespace refpage {

unsigned threadCount(unsigned jobs) noexcept {
    if (jobs != 0) return jobs;
    return std::max(1U, std::thread::hardware_concurrency());
}

void forEachIndex(std::size_t count, unsigned jobs, FunctionRef<void(std::size_t)> work) {
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

}  // namespace refpage
