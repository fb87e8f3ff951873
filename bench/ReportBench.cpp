#include "ReportBench.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "Child.h"
#include "Copies.h"
#include "Digest.h"
#include "RawDatabase.h"
#include "Report.h"
#include "Reports.h"
#include "kpTables/Convert.h"
#include "kpTables/Sqlite.h"

namespace kpTables::bench {

namespace {

constexpr double kTenThousandths = 10'000;

/// Runs and reads a report; answers its seconds.
template <class Use>
double Ask(const std::string& path, const ReportCase& report, Use use) {
    const auto book = SqliteConnection::Open(path);
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

void CheckColumns(int columns, const ReportCase& report) {
    if (columns != static_cast<int>(report.columns.size())) {
        throw std::runtime_error(report.name + " has " + std::to_string(columns) + " columns");
    }
}

std::vector<double> DigestByComponent(const std::string& path, const ReportCase& report) {
    Digest digest(report.ordered);
    Ask(path, report, [&](Recordset& rows) {
        CheckColumns(rows.FieldCount(), report);
        for (; !rows.Eof(); rows.MoveNext()) {
            for (int column = 0; column < rows.FieldCount(); ++column) {
                const Variant value = rows.GetValue(column);
                const char kind = report.columns[static_cast<std::size_t>(column)];
                if (value.IsNull()) {
                    digest.Null();
                } else if (kind == 'k' || kind == 'd') {
                    digest.Key(Text(value));
                } else {
                    digest.Figure(CDbl(value));
                }
            }
            digest.EndRow();
        }
    });
    return digest.Figures();
}

std::vector<double> DigestByHand(const std::string& path, const ReportCase& report) {
    const RawDatabase database(path);
    RawStatement rows = database.Prepare(report.byHand);
    CheckColumns(sqlite3_column_count(rows.Get()), report);
    Digest digest(report.ordered);
    while (rows.Step()) {
        for (int column = 0; column < sqlite3_column_count(rows.Get()); ++column) {
            const char kind = report.columns[static_cast<std::size_t>(column)];
            if (sqlite3_column_type(rows.Get(), column) == SQLITE_NULL) {
                digest.Null();
            } else if (kind == 'k' || kind == 'd') {
                const std::string text = reinterpret_cast<const char*>(sqlite3_column_text(rows.Get(), column));
                digest.Key(kind == 'd' ? Text(Variant(Date::ParseIso(text).value())) : text);
            } else {
                const double value = sqlite3_column_double(rows.Get(), column);
                digest.Figure(kind == 'm' ? value / kTenThousandths : value);
            }
        }
        digest.EndRow();
    }
    return digest.Figures();
}

struct Runs {
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
bool BenchReport(const std::string& path, const ReportCase& report, int runs,
                 std::vector<std::vector<std::string>>& table) {
    const auto component = InChild([&] { return DigestByComponent(path, report); }).figures;
    const auto hand = InChild([&] { return DigestByHand(path, report); }).figures;
    Runs componentRuns;
    Runs handRuns;
    for (int run = 0; run < runs; ++run) {
        componentRuns.Add(InChild([&] { return std::vector<double>{TimeByComponent(path, report)}; }));
        handRuns.Add(InChild([&] { return std::vector<double>{TimeByHand(path, report)}; }));
    }
    const double ratio = Median(componentRuns.seconds) / Median(handRuns.seconds);
    table.push_back(componentRuns.Row(report.name, Fixed(component.at(0), 0), Fixed(ratio, 2)));
    table.push_back(handRuns.Row("  by hand", Fixed(hand.at(0), 0), ""));
    return SameFigures(component, hand);
}

}  // namespace

bool BenchReports(const std::filesystem::path& folder, const BookSize& size, int runs) {
    const std::string path = (folder / "reports.kpbook").string();
    InChild([&] {
        MakeBook(path, size);
        return std::vector<double>{};
    });
    std::printf("\nReports of a book of %lld lines a direction, %lld products, %d warehouses; %d runs, in seconds\n",
                static_cast<long long>(size.lines), static_cast<long long>(size.products), size.depots, runs);
    std::vector<std::vector<std::string>> table = {{"", "rows", "min", "median", "max", "peak MiB", "ratio"}};
    std::string different;
    for (const ReportCase& report : Reports(size.lines)) {
        if (!BenchReport(path, report, runs, table)) {
            different += "\n    " + report.name;
        }
    }
    PrintTable(table);
    if (different.empty()) {
        std::printf("  The rows and their figures agree.\n");
    } else {
        std::printf("  The rows do not agree:%s\n", different.c_str());
    }
    return different.empty();
}

}  // namespace kpTables::bench
