// Variance and standard deviation of numbers that come one by one.
#pragma once

#include <cstdint>
#include <optional>

namespace kpTables::functions {

/// The numbers so far. Squares of differences are added up as they come, so that large numbers that lie close together
/// keep their digits. All zero to begin with, and free of pointers: an engine keeps it in memory of its own.
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
