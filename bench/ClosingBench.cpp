#include "ClosingBench.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <stdexcept>
#include <vector>

#include "Child.h"
#include "HandClosing.h"
#include "RawDatabase.h"
#include "Report.h"
#include "kpTables/CTables.h"
#include "kpTables/Sqlite.h"

namespace kpTables::bench {

namespace {

namespace fs = std::filesystem;

constexpr int kDepot = 1;
constexpr const char* kNote = "2003-11-30";

double CloseByComponent(const std::string& path, int month) {
    const auto book = SqliteConnection::Open(path);
    CTables tables;
    tables.Cnn(book);
    const Stopwatch watch;
    if (!tables.Close_DepotBalance(kDepot, static_cast<std::int16_t>(month), false, Variant(kNote))) {
        throw std::runtime_error("Close_DepotBalance answered False");
    }
    return watch.Seconds();
}

/// A fresh copy that is on the disk already, so that no run pays for writing it.
void Copy(const fs::path& from, const fs::path& to) {
    for (const char* log : {"-wal", "-shm"}) {
        fs::remove(to.string() + log);
    }
    fs::copy_file(from, to, fs::copy_options::overwrite_existing);
    const int file = open(to.c_str(), O_RDWR);
    if (file < 0 || fsync(file) != 0) {
        throw std::runtime_error("cannot write " + to.string());
    }
    close(file);
}

bool SameCell(sqlite3_stmt* left, sqlite3_stmt* right, int column) {
    const int type = sqlite3_column_type(left, column);
    if (type == SQLITE_FLOAT || sqlite3_column_type(right, column) == SQLITE_FLOAT) {
        const double l = sqlite3_column_double(left, column);
        const double r = sqlite3_column_double(right, column);
        return std::abs(l - r) <= 1e-9 * std::max(1.0, std::abs(l));
    }
    if (type != sqlite3_column_type(right, column)) {
        return false;
    }
    return type == SQLITE_NULL || std::string(reinterpret_cast<const char*>(sqlite3_column_text(left, column))) ==
                                      reinterpret_cast<const char*>(sqlite3_column_text(right, column));
}

/// Rows that both balance tables have; throws where they differ.
std::int64_t CompareBalances(const fs::path& left, const fs::path& right) {
    const RawDatabase leftBook(left.string());
    const RawDatabase rightBook(right.string());
    const char* text = "SELECT * FROM 仓库余额表 ORDER BY 月份, dpID, pdID";
    RawStatement leftRows = leftBook.Prepare(text);
    RawStatement rightRows = rightBook.Prepare(text);
    std::int64_t rows = 0;
    for (;;) {
        const bool more = leftRows.Step();
        if (more != rightRows.Step()) {
            throw std::runtime_error("the balance tables have different numbers of rows");
        }
        if (!more) {
            return rows;
        }
        ++rows;
        for (int column = 0; column < sqlite3_column_count(leftRows.Get()); ++column) {
            if (!SameCell(leftRows.Get(), rightRows.Get(), column)) {
                throw std::runtime_error("the balance tables differ in row " + std::to_string(rows) + ", " +
                                         sqlite3_column_name(leftRows.Get(), column));
            }
        }
    }
}

struct Runs {
    std::vector<double> seconds;
    std::vector<double> peaks;

    void Add(const Measured& measured) {
        seconds.push_back(measured.figures.at(0));
        peaks.push_back(measured.peakMebibytes);
    }
    std::vector<std::string> Row(const std::string& name) const {
        return {name, Fixed(Minimum(seconds), 3), Fixed(Median(seconds), 3), Fixed(Maximum(seconds), 3),
                Fixed(Maximum(peaks), 1)};
    }
};

}  // namespace

bool BenchClosing(const fs::path& folder, const BookSize& size, int runs) {
    const fs::path original = folder / "closing.kpbook";
    const fs::path componentCopy = folder / "closing-component.kpbook";
    const fs::path handCopy = folder / "closing-by-hand.kpbook";
    InChild([&] {
        MakeBook(original.string(), size);
        return std::vector<double>{};
    });
    std::printf("\nClosing month %d of one warehouse: %lld balance rows, %lld lines a direction; %d runs, in seconds\n",
                size.months, static_cast<long long>(size.products), static_cast<long long>(size.lines), runs);
    Runs component;
    Runs hand;
    for (int run = 0; run < runs; ++run) {
        Copy(original, componentCopy);
        component.Add(
            InChild([&] { return std::vector<double>{CloseByComponent(componentCopy.string(), size.months)}; }));
        Copy(original, handCopy);
        hand.Add(
            InChild([&] { return std::vector<double>{CloseByHand(handCopy.string(), kDepot, size.months, kNote)}; }));
    }
    PrintTable({{"", "min", "median", "max", "peak MiB"},
                component.Row("Close_DepotBalance"),
                hand.Row("set-based statements by hand"),
                {"ratio", Fixed(Minimum(component.seconds) / Minimum(hand.seconds), 2),
                 Fixed(Median(component.seconds) / Median(hand.seconds), 2),
                 Fixed(Maximum(component.seconds) / Maximum(hand.seconds), 2), ""}});
    try {
        const Measured compared =
            InChild([&] { return std::vector<double>{static_cast<double>(CompareBalances(componentCopy, handCopy))}; });
        std::printf("  The balance tables agree in all %.0f rows.\n", compared.figures.at(0));
        return true;
    } catch (const std::exception& error) {
        std::printf("  The balance tables do not agree: %s\n", error.what());
        return false;
    }
}

}  // namespace kpTables::bench
