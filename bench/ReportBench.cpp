#include "ReportBench.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "Answers.h"
#include "Child.h"
#include "Copies.h"
#include "Digest.h"
#include "RawDatabase.h"
#include "Report.h"
#include "Reports.h"
#include "kpTables/Book.h"

namespace kpTables::bench {

namespace {

/// Runs and reads a report; returns the seconds.
template <class Use>
double Ask(const std::string& path, const ReportCase& report, Use use) {
    const auto book = OpenBook(path);
    CTables tables;
    tables.Cnn(book);
    tables.isSQL(report.isSQL);
    const Stopwatch watch;
    const RecordsetPtr rows = report.ask(tables);
    const double seconds = watch.Seconds();
    use(*rows);
    return seconds;
}

double TimeByComponent(const std::string& path, const ReportCase& report) {
    return Ask(path, report, [](const Recordset&) {});
}

double TimeByHand(const std::string& path, const ReportCase& report) {
    const RawDatabase database(path);
    database.SetLikeABook();
    const Stopwatch watch;
    RawStatement rows = database.Prepare(report.byHand);
    Copies copies;
    const int columns = sqlite3_column_count(rows.Get());
    while (rows.Step()) {
        for (int column = 0; column < columns; ++column) {
            copies.Add(rows.Get(), column);
        }
    }
    return watch.Seconds();
}

std::vector<double> DigestByComponent(const std::string& path, const ReportCase& report) {
    std::vector<double> digest;
    Ask(path, report, [&](Recordset& rows) { digest = DigestOf(rows, report.columns, report.ordered); });
    return digest;
}

std::vector<double> DigestByHand(const std::string& path, const ReportCase& report) {
    const RawDatabase database(path);
    RawStatement rows = database.Prepare(report.byHand);
    return DigestOf(rows, report.columns, report.ordered);
}

struct ReportRuns {
    std::vector<double> seconds;
    double peak = 0;

    void Add(const Measured& measured) {
        seconds.push_back(measured.figures.at(0));
        peak = std::max(peak, measured.peakMebibytes);
    }
    std::vector<std::string> Row(const std::string& name, const std::string& rows, const std::string& ratio) const {
        return {name,           rows, Fixed(Minimum(seconds), 4), Fixed(Median(seconds), 4), Fixed(Maximum(seconds), 4),
                Fixed(peak, 1), ratio};
    }
};

/// Adds the lines of one report to the table; false when the rows differ.
bool BenchReport(const Setting& setting, const std::string& path, const ReportCase& report,
                 std::vector<std::vector<std::string>>& table) {
    const auto component = InChild([&] { return DigestByComponent(path, report); }).figures;
    const auto hand = InChild([&] { return DigestByHand(path, report); }).figures;
    ReportRuns componentRuns;
    ReportRuns handRuns;
    for (int run = 0; run < setting.runs; ++run) {
        componentRuns.Add(InChild([&] { return std::vector<double>{TimeByComponent(path, report)}; }));
        handRuns.Add(InChild([&] { return std::vector<double>{TimeByHand(path, report)}; }));
    }
    const double ratio = Median(componentRuns.seconds) / Median(handRuns.seconds);
    const std::string rows = Fixed(component.at(0), 0);
    table.push_back(componentRuns.Row(report.name, rows, Fixed(ratio, 2)));
    table.push_back(handRuns.Row("  by hand", Fixed(hand.at(0), 0), ""));
    setting.results->Add({report.name + ": " + rows + " rows", report.rival, "s", 4, componentRuns.seconds,
                          handRuns.seconds, report.goal > 0 ? RatioUpTo(report.goal) : Goal()});
    return SameFigures(component, hand);
}

}  // namespace

bool BenchReports(const Setting& setting, const std::string& path) {
    const BookSize& size = setting.size;
    std::fprintf(setting.details,
                 "\nReports of a book of %lld lines a direction, %lld products, %d warehouses; %d runs, in seconds\n",
                 static_cast<long long>(size.lines), static_cast<long long>(size.products), size.depots, setting.runs);
    std::vector<std::vector<std::string>> table = {{"", "rows", "min", "median", "max", "peak MiB", "ratio"}};
    std::string different;
    for (const ReportCase& report : Reports()) {
        if (!BenchReport(setting, path, report, table)) {
            different += "\n    " + report.name;
        }
    }
    PrintTable(setting.details, table);
    if (different.empty()) {
        std::fprintf(setting.details, "  The rows and their figures agree.\n");
    } else {
        std::fprintf(setting.details, "  The rows do not agree:%s\n", different.c_str());
    }
    return different.empty();
}

}  // namespace kpTables::bench
