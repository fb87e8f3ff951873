// Running variance and standard deviation.
#pragma once

#include <cstdint>
#include <optional>

namespace kpTables::functions {

/// The numbers so far. Squared differences are added up as numbers arrive, so that large numbers close together stay
/// precise. Starts all zero and has no pointers: an engine keeps it in its own memory.
struct Spread {
    std::int64_t count;
    double mean;
    double squares;

    void Add(double number) noexcept {
        const double difference = number - mean;
        mean += difference / static_cast<double>(++count);
        squares += difference * (number - mean);
    }

    /// Of a sample, or of a population; nothing for too few numbers.
    std::optional<double> Variance(bool sample) const noexcept {
        const std::int64_t divisor = count - (sample ? 1 : 0);
        if (divisor < 1) return std::nullopt;
        return squares / static_cast<double>(divisor);
    }
};

}  // namespace kpTables::functions
