// Condenses rows to a few figures that differ when the rows do.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kpTables::bench {

/// A row's figures are weighted by its keys and its place, so that exchanged figures or rows change the result.
class Digest {
public:
    /// Whether the order of the rows is defined.
    explicit Digest(bool ordered) : ordered_(ordered) {}

    // A row's cells, in order.
    void Key(std::string_view text);
    void Figure(double value);
    void Null();
    void EndRow();

    /// The number of rows, the sum of their weights, the weighted sum of each figure.
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

/// True when all figures agree except for the rounding of doubles.
bool SameFigures(const std::vector<double>& left, const std::vector<double>& right);

}  // namespace kpTables::bench
