// A random number generator that gives the same numbers on every machine and with every library.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kpTables::sample {

/// SplitMix64; draws whole numbers only.
class Random {
public:
    explicit Random(std::uint64_t seed) noexcept : state_(seed) {}

    std::uint64_t Next() noexcept {
        state_ += 0x9E3779B97F4A7C15ULL;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    /// 0 to count - 1; count is at most 2^31.
    std::int64_t Below(std::int64_t count) noexcept {
        return static_cast<std::int64_t>((Next() >> 33) * static_cast<std::uint64_t>(count) >> 31);
    }
    /// low to high, both inclusive.
    std::int64_t Between(std::int64_t low, std::int64_t high) noexcept { return low + Below(high - low + 1); }
    bool Percent(int chance) noexcept { return Below(100) < chance; }

    template <class Items>
    const auto& Pick(const Items& items) noexcept {
        return items[static_cast<std::size_t>(Below(static_cast<std::int64_t>(items.size())))];
    }

private:
    std::uint64_t state_;
};

}  // namespace kpTables::sample
