#include "Results.h"

#include "Report.h"

namespace kpTables::bench {

namespace {

std::string GoalText(const Goal& goal, int decimals) {
    if (goal.of == Goal::Of::Nothing) return "";
    constexpr int kDecimalsOfRatio = 2;
    const int places = goal.of == Goal::Of::Ratio ? kDecimalsOfRatio : decimals;
    return (goal.below ? "< " : "<= ") + Fixed(goal.limit, places);
}

std::string Verdict(const Goal& goal, double ratio, double figure) {
    if (goal.of == Goal::Of::Nothing) return "";
    const double value = goal.of == Goal::Of::Ratio ? ratio : figure;
    const bool met = goal.below ? value < goal.limit : value <= goal.limit;
    return met ? "yes" : "no";
}

void AddFigures(std::vector<std::string>& cells, const std::vector<double>& figures, int decimals) {
    if (figures.empty()) {
        cells.insert(cells.end(), 3, "");
        return;
    }
    for (const double figure : {Minimum(figures), Median(figures), Maximum(figures)}) {
        cells.push_back(Fixed(figure, decimals));
    }
}

std::vector<std::string> Cells(const Row& row) {
    std::vector<std::string> cells = {row.work, row.rival, row.unit, std::to_string(row.ours.size())};
    AddFigures(cells, row.ours, row.decimals);
    AddFigures(cells, row.theirs, row.decimals);
    const double figure = Median(row.ours);
    const double ratio = row.theirs.empty() ? 0 : figure / Median(row.theirs);
    cells.push_back(row.theirs.empty() ? "" : Fixed(Minimum(row.ours) / Minimum(row.theirs), 2));
    cells.push_back(row.theirs.empty() ? "" : Fixed(ratio, 2));
    cells.push_back(GoalText(row.goal, row.decimals));
    cells.push_back(Verdict(row.goal, ratio, figure));
    return cells;
}

}  // namespace

std::vector<std::vector<std::string>> Results::Cells() const {
    std::vector<std::vector<std::string>> table = {{"work", "rival", "in", "runs", "ours: min", "median", "max",
                                                    "rival's: min", "median", "max", "ratio of minima", "of medians",
                                                    "goal", "met"}};
    for (const Row& row : rows_) {
        table.push_back(bench::Cells(row));
    }
    return table;
}

std::string Results::Markdown() const {
    std::string text;
    for (const auto& cells : Cells()) {
        const bool heading = text.empty();
        for (const std::string& cell : cells) {
            text.append("| ").append(cell).append(" ");
        }
        text += "|\n";
        if (!heading) continue;
        for (std::size_t column = 0; column < cells.size(); ++column) {
            text += column < kTextColumns ? "|---" : "|---:";
        }
        text += "|\n";
    }
    return text;
}

}  // namespace kpTables::bench
