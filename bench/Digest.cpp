#include "Digest.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace kpTables::bench {

void Digest::Mix(std::uint64_t value) noexcept {
    hash_ = (hash_ ^ value) * 0x9E3779B97F4A7C15ULL;
    hash_ ^= hash_ >> 29;
}

void Digest::Key(std::string_view text) {
    Mix(std::hash<std::string_view>()(text));
    row_.push_back(0);
}

void Digest::Figure(double value) {
    Mix(1);
    row_.push_back(value);
}

void Digest::Null() {
    Mix(2);
    row_.push_back(0);
}

void Digest::EndRow() {
    ++rows_;
    if (ordered_) {
        Mix(static_cast<std::uint64_t>(rows_));
    }
    constexpr int kFractionBits = 53;
    const double weight = 1 + std::ldexp(static_cast<double>(hash_ >> (64 - kFractionBits)), -kFractionBits);
    weights_ += weight;
    sums_.resize(row_.size());
    for (std::size_t column = 0; column < row_.size(); ++column) {
        sums_[column] += weight * row_[column];
    }
    row_.clear();
    hash_ = 0;
}

std::vector<double> Digest::Figures() const {
    std::vector<double> figures = {rows_, weights_};
    figures.insert(figures.end(), sums_.begin(), sums_.end());
    return figures;
}

bool SameFigures(const std::vector<double>& left, const std::vector<double>& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](double l, double r) { return std::abs(l - r) <= 1e-11 * std::max(1.0, std::abs(l)); });
}

}  // namespace kpTables::bench
