// All measurements, as the rows of one table.
#pragma once

#include <string>
#include <vector>

namespace kpTables::bench {

/// The goal of a row.
struct Goal {
    enum class Of { Nothing, Ratio, Figure };
    Of of = Of::Nothing;
    double limit = 0;
    bool below = false;  ///< the limit itself is excluded
};
constexpr Goal RatioUpTo(double limit) { return {Goal::Of::Ratio, limit, false}; }
constexpr Goal RatioBelow(double limit) { return {Goal::Of::Ratio, limit, true}; }
constexpr Goal UpTo(double limit) { return {Goal::Of::Figure, limit, false}; }
constexpr Goal Below(double limit) { return {Goal::Of::Figure, limit, true}; }

struct Row {
    std::string work;
    std::string rival;
    std::string unit;
    int decimals = 3;
    std::vector<double> ours;    ///< one figure per run
    std::vector<double> theirs;  ///< one figure per run, measured alternately with ours
    Goal goal = {};
};

/// Goals apply to the medians. The minima are shown beside them: on a busy machine they say more about the work itself.
class Results {
public:
    void Add(Row row) { rows_.push_back(std::move(row)); }
    bool Empty() const noexcept { return rows_.empty(); }
    /// The heading and the rows as texts.
    std::vector<std::vector<std::string>> Cells() const;
    std::string Markdown() const;

    /// Columns of Cells that are texts; the others are figures.
    static constexpr std::size_t kTextColumns = 3;

private:
    std::vector<Row> rows_;
};

}  // namespace kpTables::bench
