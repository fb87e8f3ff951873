#include "ImportBench.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "Answers.h"
#include "BookCopy.h"
#include "Child.h"
#include "Digest.h"
#include "Program.h"
#include "RawDatabase.h"
#include "Report.h"
#include "kpTables/Book.h"

namespace kpTables::bench {

namespace {

namespace fs = std::filesystem;

/// A table to import into. The file has all columns, in the table's order.
struct ImportCase {
    const char* table;
    std::int64_t share;  ///< one row per this many lines of the benchmark
    void (*writeRow)(std::FILE* file, long long row);
    const char* kinds;        ///< kinds of the book's columns, as in Answers.h
    const char* copiedKinds;  ///< kinds of the copy's columns, which hold money as the file has it
};

void WriteLine(std::FILE* file, long long row) {
    constexpr long long kLinesOfABill = 10;
    const long long price = 50'000 + row * 7919 % 950'000;
    const long long quantity = 1 + row % 64;
    const long long net = price * quantity;
    const long long tax = net * 17 / 100;
    const auto money = [file](long long value) { std::fprintf(file, "%lld.%04lld,", value / 10'000, value % 10'000); };
    std::fprintf(file, "%lld,%lld,1,", 1 + row / kLinesOfABill, 1 + row * 31 % 100'000);
    money(price * 117 / 100);
    std::fprintf(file, "%lld,", quantity);
    for (const long long value : {net + tax, tax, price, net}) {
        money(value);
    }
    std::fprintf(file, "陈建国,王丽华,纸箱,\"A-%02lld,1\",%lld,1\n", row % 100, row % 30);
}

void WriteProduct(std::FILE* file, long long row) {
    std::fprintf(file,
                 "%lld,商品%lld,SP%lld,%lld,01,\"%lld,5号\",B%lld,吨,四舍五入,先进先出,%lld.125,0.06,0.17,%lld.5,0.06,"
                 "0.17,%lld,%lld,1,69%011lld,P%lld,第%lld建材厂,一号库,A-%lld,常备\n",
                 row + 1, row * 7919 % 1'000'003, row + 1, 1 + row % 200, row % 50, row % 9, row % 1000, row % 900,
                 row % 10, 100 + row % 900, row * 31, row + 1, row % 300, row % 40);
}

constexpr std::array kCases = {
    ImportCase{"入库记录", 1, WriteLine, "kkkmqmmmmkkkkqk", "kkkqqqqqqkkkkqk"},
    ImportCase{"商品设置", 10, WriteProduct, "kkkkkkkkkkqqqqqqqqqkkkkkk", "kkkkkkkkkkqqqqqqqqqkkkkkk"},
};

/// The file, with the table's columns as its first line.
void WriteFile(const fs::path& path, const ImportCase& import, std::int64_t rows, const fs::path& book) {
    std::FILE* file = std::fopen(path.c_str(), "w");
    if (file == nullptr) {
        throw std::runtime_error("cannot write " + path.string());
    }
    const RawDatabase database(book.string());
    const RawStatement columns = database.Prepare(std::string("SELECT * FROM ") + import.table);
    for (int column = 0; column < sqlite3_column_count(columns.Get()); ++column) {
        std::fprintf(file, "%s%s", column == 0 ? "" : ",", sqlite3_column_name(columns.Get(), column));
    }
    std::fputc('\n', file);
    for (std::int64_t row = 0; row < rows; ++row) {
        import.writeRow(file, row);
    }
    if (std::fclose(file) != 0) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

/// The shell does not know a book's order of text, so the copy's columns have SQLite's own order without regard to
/// case.
void CopyTables(const fs::path& book, const fs::path& copy) {
    fs::remove(copy);
    std::ofstream(copy).close();
    const RawDatabase from(book.string());
    const RawDatabase to(copy.string());
    to.SetLikeABook();
    RawStatement schema = from.Prepare(
        "SELECT replace(sql, 'KPTEXT', 'NOCASE') FROM sqlite_schema WHERE sql IS NOT NULL AND name NOT LIKE "
        "'sqlite%' ORDER BY type DESC");
    while (schema.Step()) {
        to.Run(reinterpret_cast<const char*>(sqlite3_column_text(schema.Get(), 0)));
    }
}

std::vector<double> DigestOfTable(const fs::path& path, const char* table, const char* kinds) {
    return InChild([&] {
               const RawDatabase database(path.string());
               RawStatement rows = database.Prepare(std::string("SELECT * FROM ") + table + " ORDER BY rowid");
               return DigestOf(rows, kinds, true);
           })
        .figures;
}

bool ImportInTurns(const Setting& setting, const ImportCase& import, std::vector<std::vector<std::string>>& table) {
    const fs::path emptyBook = setting.folder / "empty.kpbook";
    const fs::path emptyCopy = setting.folder / "empty.db";
    const fs::path book = setting.folder / "import.kpbook";
    const fs::path copy = setting.folder / "import.db";
    const fs::path file = setting.folder / "import.csv";
    const std::int64_t rows = std::max<std::int64_t>(1, setting.size.lines / import.share);
    fs::remove(emptyBook);
    CreateBook(emptyBook.string());
    CopyTables(emptyBook, emptyCopy);
    WriteFile(file, import, rows, emptyBook);
    Row row{"kpbook import, " + std::to_string(rows) + " CSV lines into " + import.table,
            "sqlite3 .import, order of text NOCASE",
            "s",
            3,
            {},
            {},
            RatioUpTo(1.5)};
    double peak = 0;
    double shellPeak = 0;
    for (int run = 0; run < setting.runs; ++run) {
        CopyBook(emptyBook, book);
        const Ended ours = RunProgram({KPBENCH_KPBOOK, "import", book.string(), import.table, file.string()});
        CopyBook(emptyCopy, copy);
        const Ended theirs = RunProgram({"sqlite3", "-batch", "-bail", "-cmd", "PRAGMA synchronous=FULL", "-cmd",
                                         "PRAGMA cache_size=-16384", copy.string(),
                                         ".import --csv --skip 1 " + file.string() + " " + import.table});
        row.ours.push_back(ours.seconds);
        row.theirs.push_back(theirs.seconds);
        peak = std::max(peak, ours.peakMebibytes);
        shellPeak = std::max(shellPeak, theirs.peakMebibytes);
    }
    const auto line = [&](const std::string& name, const std::vector<double>& seconds, double mebibytes) {
        table.push_back({name, Fixed(Minimum(seconds), 3), Fixed(Median(seconds), 3), Fixed(Maximum(seconds), 3),
                         Fixed(mebibytes, 1)});
    };
    line(row.work, row.ours, peak);
    line("  " + row.rival, row.theirs, shellPeak);
    setting.results->Add(std::move(row));
    const std::vector<double> imported = DigestOfTable(book, import.table, import.kinds);
    return imported.at(0) == static_cast<double>(rows) &&
           SameFigures(imported, DigestOfTable(copy, import.table, import.copiedKinds));
}

}  // namespace

bool BenchImport(const Setting& setting) {
    std::fprintf(setting.details, "\nImports; %d runs, in seconds\n", setting.runs);
    std::vector<std::vector<std::string>> table = {{"", "min", "median", "max", "peak MiB"}};
    bool same = true;
    for (const ImportCase& import : kCases) {
        same = ImportInTurns(setting, import, table) && same;
    }
    PrintTable(setting.details, table);
    std::fprintf(setting.details, "  The imported rows %s.\n", same ? "agree" : "do not agree");
    return same;
}

}  // namespace kpTables::bench
