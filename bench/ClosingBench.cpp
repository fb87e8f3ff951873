#include "ClosingBench.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "Closings.h"

namespace kpTables::bench {

namespace {

constexpr const char* kByHand = "set-based SQL by hand";

/// The exponent with which the seconds grow with the lines: the slope of the line through their logarithms.
double Exponent(const std::vector<double>& lines, const std::vector<double>& seconds) {
    const auto count = static_cast<double>(lines.size());
    double sumX = 0;
    double sumY = 0;
    double sumXX = 0;
    double sumXY = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const double x = std::log(lines[i]);
        const double y = std::log(seconds[i]);
        sumX += x;
        sumY += y;
        sumXX += x * x;
        sumXY += x * y;
    }
    return (count * sumXY - sumX * sumY) / (count * sumXX - sumX * sumX);
}

/// One exponent per run.
std::vector<double> Exponents(const std::vector<double>& lines, const std::vector<std::vector<double>>& seconds) {
    std::vector<double> exponents;
    for (std::size_t run = 0; run < seconds.front().size(); ++run) {
        std::vector<double> ofRun;
        for (const std::vector<double>& each : seconds) {
            ofRun.push_back(each[run]);
        }
        exponents.push_back(Exponent(lines, ofRun));
    }
    return exponents;
}

/// A year of ten warehouses: a hundred lines per direction for each product, so that all tables grow together.
BookSize YearSize(std::int64_t lines) {
    constexpr std::int64_t kLinesOfAProduct = 100;
    return {lines, std::max<std::int64_t>(1, lines / kLinesOfAProduct), 10, 12, 1};
}

}  // namespace

bool BenchClosing(const Setting& setting) {
    const std::filesystem::path book = setting.folder / "closing.kpbook";
    const BookSize& size = setting.size;
    MakeBook(book.string(), size);
    std::fprintf(
        setting.details,
        "\nClosing month %d of one warehouse: %lld balance rows, %lld lines a direction; %d runs, in seconds\n",
        size.months, static_cast<long long>(size.products), static_cast<long long>(size.lines), setting.runs);
    const ClosingRuns runs = RunClosings(setting, book, {size.months, size.months, 1});
    const std::string work = "Close_DepotBalance, " + std::to_string(size.products) + " balance rows, " +
                             std::to_string(size.lines) + " lines a direction";
    setting.results->Add({work, kByHand, "s", 3, runs.component, runs.hand, RatioUpTo(1.25)});
    setting.results->Add({work + ": peak memory", kByHand, "MiB", 1, runs.componentPeaks, runs.handPeaks, Below(200)});
    return PrintClosings(setting, runs);
}

bool BenchYear(const Setting& all) {
    // A year takes as long as dozens of other runs.
    constexpr int kMostRuns = 3;
    Setting setting = all;
    setting.runs = std::min(all.runs, kMostRuns);
    const std::array<std::int64_t, 3> sizes = {setting.size.lines / 100, setting.size.lines / 10, setting.size.lines};
    std::vector<double> lines;
    std::vector<std::vector<double>> component;
    std::vector<std::vector<double>> hand;
    bool same = true;
    for (const std::int64_t each : sizes) {
        const std::filesystem::path book = setting.folder / "year.kpbook";
        const BookSize size = YearSize(std::max<std::int64_t>(1, each));
        MakeBook(book.string(), size);
        std::fprintf(setting.details,
                     "\nClosing a year: 12 months of 10 warehouses, %lld products, %lld lines a direction; %d runs, "
                     "in seconds\n",
                     static_cast<long long>(size.products), static_cast<long long>(size.lines), setting.runs);
        const ClosingRuns runs = RunClosings(setting, book, {1, size.months, size.depots});
        same = PrintClosings(setting, runs) && same;
        const bool whole = each == setting.size.lines;
        setting.results->Add({"a year: 12 months x 10 warehouses, " + std::to_string(size.lines) +
                                  " lines a direction, " + std::to_string(size.products * size.depots) +
                                  " balance rows a month",
                              kByHand, "s", 3, runs.component, runs.hand, whole ? RatioUpTo(1.25) : Goal{}});
        lines.push_back(static_cast<double>(size.lines));
        component.push_back(runs.component);
        hand.push_back(runs.hand);
    }
    setting.results->Add({"a year: time against lines, slope of the log-log line", kByHand, "", 2,
                          Exponents(lines, component), Exponents(lines, hand), UpTo(1.1)});
    return same;
}

}  // namespace kpTables::bench
