#include "Closings.h"

#include <stdexcept>

#include "BalanceTables.h"
#include "BookCopy.h"
#include "Child.h"
#include "HandClosing.h"
#include "Report.h"
#include "kpTables/Book.h"
#include "kpTables/CTables.h"

namespace kpTables::bench {

namespace {

std::string NoteOf(int month) { return std::to_string(kBookYear) + "-" + std::to_string(month) + "-28"; }

double CloseByComponent(const std::string& path, const Months& months) {
    const auto book = OpenBook(path);
    CTables tables;
    tables.Cnn(book);
    const Stopwatch watch;
    for (int month = months.first; month <= months.last; ++month) {
        for (int depot = 1; depot <= months.depots; ++depot) {
            if (!tables.Close_DepotBalance(depot, static_cast<std::int16_t>(month), false, Variant(NoteOf(month)))) {
                throw std::runtime_error("Close_DepotBalance answered False");
            }
        }
    }
    return watch.Seconds();
}

double CloseByStatements(const std::string& path, const Months& months) {
    const RawDatabase database(path);
    database.SetLikeABook();
    const Stopwatch watch;
    for (int month = months.first; month <= months.last; ++month) {
        for (int depot = 1; depot <= months.depots; ++depot) {
            CloseByHand(database, depot, month, NoteOf(month));
        }
    }
    return watch.Seconds();
}

std::vector<std::string> LineOf(const std::string& name, const std::vector<double>& seconds,
                                const std::vector<double>& peaks) {
    return {name, Fixed(Minimum(seconds), 3), Fixed(Median(seconds), 3), Fixed(Maximum(seconds), 3),
            Fixed(Maximum(peaks), 1)};
}

}  // namespace

ClosingRuns RunClosings(const Setting& setting, const std::filesystem::path& book, const Months& months) {
    const std::filesystem::path componentCopy = book.string() + "-component";
    const std::filesystem::path handCopy = book.string() + "-by-hand";
    ClosingRuns runs;
    for (int run = 0; run < setting.runs; ++run) {
        CopyBook(book, componentCopy);
        const Measured component =
            InChild([&] { return std::vector<double>{CloseByComponent(componentCopy.string(), months)}; });
        CopyBook(book, handCopy);
        const Measured hand =
            InChild([&] { return std::vector<double>{CloseByStatements(handCopy.string(), months)}; });
        runs.component.push_back(component.figures.at(0));
        runs.componentPeaks.push_back(component.peakMebibytes);
        runs.hand.push_back(hand.figures.at(0));
        runs.handPeaks.push_back(hand.peakMebibytes);
    }
    runs.rows = CompareBalances(componentCopy, handCopy);
    for (const std::filesystem::path& done : {book, componentCopy, handCopy}) {
        std::filesystem::remove(done);
    }
    return runs;
}

bool PrintClosings(const Setting& setting, const ClosingRuns& runs) {
    PrintTable(setting.details, {{"", "min", "median", "max", "peak MiB"},
                                 LineOf("Close_DepotBalance", runs.component, runs.componentPeaks),
                                 LineOf("set-based statements by hand", runs.hand, runs.handPeaks),
                                 {"ratio", Fixed(Minimum(runs.component) / Minimum(runs.hand), 2),
                                  Fixed(Median(runs.component) / Median(runs.hand), 2),
                                  Fixed(Maximum(runs.component) / Maximum(runs.hand), 2), ""}});
    if (runs.rows < 0) {
        std::fprintf(setting.details, "  The balance tables do not agree.\n");
        return false;
    }
    std::fprintf(setting.details, "  The balance tables agree in all %.0f rows.\n", runs.rows);
    return true;
}

}  // namespace kpTables::bench
