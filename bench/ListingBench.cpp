#include "ListingBench.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "Child.h"
#include "Copies.h"
#include "RawDatabase.h"
#include "Report.h"
#include "kpTables/CTables.h"
#include "kpTables/Sqlite.h"

namespace kpTables::bench {

namespace {

/// Seconds to the recordset, seconds to read its cells, bytes it occupies, rows, columns.
std::vector<double> ListByComponent(const std::string& path, int depot) {
    const auto book = SqliteConnection::Open(path);
    CTables tables;
    tables.Cnn(book);
    const double before = ResidentBytes();
    const Stopwatch fetching;
    const RecordsetPtr lines = tables.rs入库记录(depot, 0);
    const double fetched = fetching.Seconds();
    const double bytes = ResidentBytes() - before;
    const Stopwatch reading;
    double cells = 0;
    for (; !lines->Eof(); lines->MoveNext()) {
        for (int column = 0; column < lines->FieldCount(); ++column) {
            cells += lines->GetValue(column).IsEmpty() ? 0 : 1;
        }
    }
    const double read = reading.Seconds();
    const double columns = lines->FieldCount();
    return {fetched, read, bytes, cells / columns, columns};
}

/// Seconds, 0, bytes of the copies, rows, columns, bytes of text in them.
std::vector<double> ListByHand(const std::string& path, int depot) {
    const RawDatabase database(path);
    database.SetLikeABook();
    RawStatement lines = database.Prepare(
        std::string("SELECT Lst.BillID, Lst.*, Rec.*, Dp.仓库名称, Ks.企业名称 FROM 入库记录 AS Rec "
                    "INNER JOIN 入库目录 AS Lst ON Rec.BillID = Lst.BillID "
                    "INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID LEFT JOIN 厂商资料 AS Ks ON Lst.ksID = Ks.KSID ") +
        (depot > 0 ? "WHERE Lst.dpID = " + std::to_string(depot) : "") +
        " ORDER BY Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.单据编号");
    const double before = ResidentBytes();
    const Stopwatch watch;
    Copies copies;
    double rows = 0;
    const int columns = sqlite3_column_count(lines.Get());
    while (lines.Step()) {
        ++rows;
        for (int column = 0; column < columns; ++column) {
            copies.Add(lines.Get(), column);
        }
    }
    return {watch.Seconds(), 0, ResidentBytes() - before, rows, static_cast<double>(columns), copies.TextBytes()};
}

struct Runs {
    std::vector<Measured> measured;

    double MedianOf(std::size_t figure) const {
        std::vector<double> values;
        for (const Measured& each : measured) {
            values.push_back(each.figures.at(figure));
        }
        return Median(values);
    }
    double Cells() const { return MedianOf(3) * MedianOf(4); }
    std::vector<std::string> Row(const std::string& name, bool reads) const {
        std::vector<double> seconds;
        double peak = 0;
        for (const Measured& each : measured) {
            seconds.push_back(each.figures.at(0));
            peak = std::max(peak, each.peakMebibytes);
        }
        return {name,
                Fixed(MedianOf(3), 0),
                Fixed(Minimum(seconds), 3),
                Fixed(Median(seconds), 3),
                Fixed(Maximum(seconds), 3),
                Fixed(Median(seconds) / Cells() * 1e9, 1),
                reads ? Fixed(MedianOf(1) / Cells() * 1e9, 1) : "",
                Fixed(MedianOf(2) / Cells(), 1),
                Fixed(peak, 1)};
    }
};

}  // namespace

bool BenchListing(const std::filesystem::path& folder, const BookSize& size, int runs) {
    const std::string path = (folder / "listing.kpbook").string();
    InChild([&] {
        MakeBook(path, size);
        return std::vector<double>{};
    });
    std::printf("\nListing inbound lines of a book of %lld, %d warehouses; %d runs, in seconds\n",
                static_cast<long long>(size.lines), size.depots, runs);
    std::vector<std::vector<std::string>> table = {
        {"", "rows", "min", "median", "max", "ns a cell", "ns to read it", "bytes a cell", "peak MiB"}};
    bool same = true;
    double text = 0;
    for (const int depot : {1, 0}) {
        Runs component;
        Runs hand;
        for (int run = 0; run < runs; ++run) {
            component.measured.push_back(InChild([&] { return ListByComponent(path, depot); }));
            hand.measured.push_back(InChild([&] { return ListByHand(path, depot); }));
        }
        const std::string which = depot > 0 ? "one warehouse" : "whole book";
        table.push_back(component.Row(which + ": rs入库记录", true));
        table.push_back(hand.Row(which + ": sqlite3_step loop", false));
        same = same && component.MedianOf(3) == hand.MedianOf(3) && component.MedianOf(4) == hand.MedianOf(4);
        text = hand.MedianOf(5) / hand.Cells();
    }
    PrintTable(table);
    std::printf("  Text makes up %s bytes a cell. Rows and columns %s.\n", Fixed(text, 1).c_str(),
                same ? "agree" : "do not agree");
    return same;
}

}  // namespace kpTables::bench
