#include "EntryBench.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "Answers.h"
#include "BillEntry.h"
#include "BookCopy.h"
#include "Child.h"
#include "Digest.h"
#include "RawDatabase.h"
#include "Report.h"

namespace kpTables::bench {

namespace {

namespace fs = std::filesystem;

/// How many bills share a transaction, and how many are entered per run. A bill in its own transaction mostly waits for
/// the disk.
struct EntryCase {
    int billsOfTransaction;
    int bills;
};
constexpr EntryCase kAlone{1, 300};
constexpr EntryCase kTogether{100, 1'000};

/// The books into which the same bills are entered.
struct Books {
    std::string ours;
    std::string hand;
    std::string bare;  ///< without indexes except the keys
};

std::vector<std::string> IndexesOfBills(const std::string& path) {
    const RawDatabase database(path);
    RawStatement indexes = database.Prepare(
        "SELECT name FROM sqlite_schema WHERE type = 'index' AND sql IS NOT NULL AND tbl_name IN ('入库目录', "
        "'入库记录') ORDER BY rowid");
    std::vector<std::string> names;
    while (indexes.Step()) names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(indexes.Get(), 0)));
    return names;
}

/// A copy without some of the indexes.
void CopyWithout(const std::string& book, const std::string& copy, const std::vector<std::string>& indexes) {
    CopyBook(book, copy);
    const RawDatabase database(copy);
    for (const std::string& name : indexes) database.Run("DROP INDEX \"" + name + "\"");
}

/// The entered rows, in the order of entry.
std::vector<double> DigestOfEntered(const std::string& path, std::int64_t lastBill) {
    const auto digest = [&](const char* table, const char* kinds) {
        return InChild([&] {
                   const RawDatabase database(path);
                   RawStatement rows =
                       database.Prepare(std::string("SELECT * FROM ") + table + " WHERE BillID > ? ORDER BY rowid");
                   rows.Bind(1, lastBill);
                   return DigestOf(rows, kinds, true);
               })
            .figures;
    };
    std::vector<double> both = digest("入库目录", "kkkkkkkkkkkkkdkdkk");
    for (const double figure : digest("入库记录", "kkkmqmmmmkkkkqk")) both.push_back(figure);
    return both;
}

struct EntryRuns {
    std::vector<double> microseconds;
    double pages = 0;

    void Add(const Measured& measured) {
        microseconds.push_back(measured.figures.at(0));
        if (measured.figures.size() > 1) pages = measured.figures[1];
    }
    std::vector<std::string> Line(const std::string& name, const std::string& ratio) const {
        return {name,
                Fixed(Minimum(microseconds), 1),
                Fixed(Median(microseconds), 1),
                Fixed(Maximum(microseconds), 1),
                pages > 0 ? Fixed(pages, 1) : "",
                ratio};
    }
};

Measured RunByRecordsets(const std::string& path, const std::vector<NewBill>& bills, int billsOfTransaction) {
    return InChild([&] { return std::vector<double>{EnterByRecordsets(path, bills, billsOfTransaction)}; });
}

Measured RunByHand(const std::string& path, const std::vector<NewBill>& bills, int billsOfTransaction) {
    return InChild([&] {
        const Entered entered = EnterByHand(path, bills, billsOfTransaction);
        return std::vector<double>{entered.microseconds, entered.pages};
    });
}

std::string RatioOf(const EntryRuns& runs, const EntryRuns& rival) {
    return Fixed(Median(runs.microseconds) / Median(rival.microseconds), 2);
}

void EnterInTurns(const Setting& setting, const Books& books, const EntryCase& entry,
                  std::vector<std::vector<std::string>>& table) {
    EntryRuns ours;
    EntryRuns hand;
    EntryRuns bare;
    const int together = entry.billsOfTransaction;
    for (int run = 0; run < setting.runs; ++run) {
        const auto bills = NewBills(setting.size, together * setting.runs + run, entry.bills);
        ours.Add(RunByRecordsets(books.ours, bills, together));
        hand.Add(RunByHand(books.hand, bills, together));
        bare.Add(RunByRecordsets(books.bare, bills, together));
    }
    const std::string work = "a bill of ten lines into a book of " + std::to_string(setting.size.lines) + " lines, " +
                             (together == 1 ? "each" : std::to_string(together)) + " in a transaction";
    table.push_back(ours.Line(work, ""));
    table.push_back(hand.Line("  prepared inserts by hand", RatioOf(ours, hand)));
    table.push_back(bare.Line("  the same without the indexes", RatioOf(ours, bare)));
    setting.results->Add({work, "prepared inserts by hand", "us", 1, ours.microseconds, hand.microseconds, {}});
    setting.results->Add({work, "the same without the indexes", "us", 1, ours.microseconds, bare.microseconds, {}});
}

/// Measures the book without each index in turn, beside the whole book: by hand, where the rest of the work varies
/// least. Bills in their own transactions take the disk's time, but the number of pages written is exact.
void PrintEachIndex(const Setting& setting, const std::string& whole) {
    std::vector<std::vector<std::string>> table = {
        {"", "alone: pages", "together: pages", "microseconds, of medians", "of minima"}};
    const std::string copy = (setting.folder / "entry-without.kpbook").string();
    int series = 1'000;
    for (const std::string& index : IndexesOfBills(whole)) {
        CopyWithout(whole, copy, {index});
        std::vector<std::string> line = {index};
        for (const EntryCase& entry : {kAlone, kTogether}) {
            const bool alone = entry.billsOfTransaction == 1;
            EntryRuns all;
            EntryRuns without;
            for (int run = 0; run < (alone ? 1 : setting.runs); ++run) {
                const auto bills = NewBills(setting.size, ++series, entry.bills);
                all.Add(RunByHand(whole, bills, entry.billsOfTransaction));
                without.Add(RunByHand(copy, bills, entry.billsOfTransaction));
            }
            line.push_back(Fixed(all.pages - without.pages, 1));
            if (alone) continue;
            line.push_back(Fixed(Median(all.microseconds) - Median(without.microseconds), 1));
            line.push_back(Fixed(Minimum(all.microseconds) - Minimum(without.microseconds), 1));
        }
        table.push_back(std::move(line));
    }
    fs::remove(copy);
    std::fprintf(setting.details, "\nWhat each index adds to a bill: written pages and microseconds\n");
    PrintTable(setting.details, table);
}

}  // namespace

bool BenchEntry(const Setting& all, bool eachIndex) {
    Setting setting = all;
    setting.size.depots = 4;
    setting.size.grown = true;
    const fs::path book = setting.folder / "entry.kpbook";
    MakeBook(book.string(), setting.size);
    const Books books{book.string() + "-ours", book.string() + "-hand", book.string() + "-bare"};
    CopyBook(book, books.ours);
    CopyBook(book, books.hand);
    CopyWithout(book.string(), books.bare, IndexesOfBills(books.ours));
    std::fprintf(setting.details,
                 "\nBills of ten lines entered into a book of %lld lines a direction, %lld products, %d warehouses; %d "
                 "runs, in microseconds and written pages a bill\n",
                 static_cast<long long>(setting.size.lines), static_cast<long long>(setting.size.products),
                 setting.size.depots, setting.runs);
    std::vector<std::vector<std::string>> table = {{"", "min", "median", "max", "pages", "ratio"}};
    for (const EntryCase& entry : {kAlone, kTogether}) EnterInTurns(setting, books, entry, table);
    PrintTable(setting.details, table);
    constexpr std::int64_t kLinesOfABill = 10;
    const std::int64_t lastBill = (setting.size.lines + kLinesOfABill - 1) / kLinesOfABill;
    const std::vector<double> entered = DigestOfEntered(books.ours, lastBill);
    const bool same = entered.at(0) == (kAlone.bills + kTogether.bills) * setting.runs &&
                      SameFigures(entered, DigestOfEntered(books.hand, lastBill)) &&
                      SameFigures(entered, DigestOfEntered(books.bare, lastBill));
    std::fprintf(setting.details, "  The entered rows %s.\n", same ? "agree" : "do not agree");
    if (eachIndex) PrintEachIndex(setting, books.hand);
    for (const std::string& done : {book.string(), books.ours, books.hand, books.bare}) fs::remove(done);
    return same;
}

}  // namespace kpTables::bench
