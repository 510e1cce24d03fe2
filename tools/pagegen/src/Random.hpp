// The generator's random source: splitmix64, and draws made with integer
// arithmetic only, so a seed means the same values everywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace pagegen {

class Random {
public:
    explicit Random(std::uint64_t seed) noexcept : state_(seed) {}

    std::uint64_t next() noexcept {
        std::uint64_t z = (state_ += 0x9e3779b97f4a7c15ULL);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }

    /// In [0, n), uniform but for a bias below n / 2^64; 0 when n is 0.
    std::size_t below(std::size_t n) noexcept { return n == 0 ? 0 : static_cast<std::size_t>(next() % n); }

    /// Uniform in [low, high].
    std::size_t between(std::size_t low, std::size_t high) noexcept { return low + below(high - low + 1); }

    /// True with probability `perMillion` / 1,000,000.
    bool chance(std::uint32_t perMillion) noexcept { return below(1'000'000) < perMillion; }

    /// Geometric count with the given mean in hundredths (250: mean 2.5), at most `most`.
    std::size_t count(std::size_t meanHundredths, std::size_t most) noexcept {
        std::size_t n = 0;
        // Each step continues with probability mean / (mean + 1).
        while (n < most && below(meanHundredths + 100) < meanHundredths) ++n;
        return n;
    }

    template <class T>
    T const& pick(std::span<T const> items) noexcept {
        return items[below(items.size())];
    }

    /// A fresh source for one part, independent of how much this one is used afterwards.
    Random fork() noexcept { return Random(next()); }

private:
    std::uint64_t state_;
};

/// A share in [0, 1] as parts per million, clamped.
inline std::uint32_t perMillion(double share) noexcept {
    if (!(share > 0.0)) return 0;
    if (share >= 1.0) return 1'000'000;
    return static_cast<std::uint32_t>(share * 1'000'000.0 + 0.5);
}

}  // namespace pagegen
