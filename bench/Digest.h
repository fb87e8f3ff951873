// Boils rows down to a few figures, in which any two different results differ.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kpTables::bench {

/// A row's keys and its place decide how much its figures weigh, so that rows that have changed figures or places show.
class Digest {
public:
    /// Whether the rows have an order of their own.
    explicit Digest(bool ordered) : ordered_(ordered) {}

    // A row's cells, in order.
    void Key(std::string_view text);
    void Figure(double value);
    void Null();
    void EndRow();

    /// The number of rows, the sum of their weights, the weighed sum of each figure.
    std::vector<double> Figures() const;
    double Rows() const noexcept { return rows_; }

private:
    void Mix(std::uint64_t value) noexcept;

    bool ordered_;
    std::uint64_t hash_ = 0;
    std::vector<double> row_;
    std::vector<double> sums_;
    double rows_ = 0;
    double weights_ = 0;
};

/// True when all figures agree but for the rounding of doubles.
bool SameFigures(const std::vector<double>& left, const std::vector<double>& right);

}  // namespace kpTables::bench
