#include "ListingBench.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "Answers.h"
#include "Child.h"
#include "Copies.h"
#include "Digest.h"
#include "RawDatabase.h"
#include "Report.h"
#include "kpTables/Book.h"
#include "kpTables/CTables.h"

namespace kpTables::bench {

namespace {

/// Seconds to the recordset, seconds to read its cells, bytes it occupies, rows, columns.
std::vector<double> ListByComponent(const std::string& path, int depot) {
    const auto book = OpenBook(path);
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

/// The headers' columns are listed: Lst.* would also include the second name of pjID, which the component does not
/// list.
std::string LinesByHand(int depot) {
    return std::string(
               "SELECT Lst.BillID, Lst.BillID, Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.类型, Lst.单据编号, "
               "Lst.编号, Lst.BillType, Lst.dpID, Lst.ksID, Lst.pjID, Lst.录入员, Lst.录入日期, Lst.审核员, "
               "Lst.审核日期, Lst.说明, Rec.*, Dp.仓库名称, Ks.企业名称 FROM 入库记录 AS Rec "
               "INNER JOIN 入库目录 AS Lst ON Rec.BillID = Lst.BillID "
               "INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID "
               "LEFT JOIN 厂商资料 AS Ks ON Lst.ksID = Ks.KSID ") +
           (depot > 0 ? "WHERE Lst.dpID = " + std::to_string(depot) : "") +
           " ORDER BY Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.单据编号";
}

/// Seconds, 0, bytes of the copies, rows, columns, bytes of text in them.
std::vector<double> ListByHand(const std::string& path, int depot) {
    const RawDatabase database(path);
    database.SetLikeABook();
    RawStatement lines = database.Prepare(LinesByHand(depot));
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

/// The kinds of the columns of rs入库记录: the bill's id, the bill, the line, the warehouse and the supplier.
constexpr const char* kColumns =
    "k"
    "kkkkkkkkkkkkkdkdk"
    "kkkmqmmmmkkkkqk"
    "kk";

/// Whether both sides have the same cells.
bool SameLines(const std::string& path, int depot) {
    const auto component = InChild([&] {
        CTables tables;
        tables.Cnn(OpenBook(path));
        return DigestOf(*tables.rs入库记录(depot, 0), kColumns, false);
    });
    const auto hand = InChild([&] {
        const RawDatabase database(path);
        RawStatement lines = database.Prepare(LinesByHand(depot));
        return DigestOf(lines, kColumns, false);
    });
    return SameFigures(component.figures, hand.figures);
}

struct ListingRuns {
    std::vector<Measured> measured;

    std::vector<double> All(std::size_t figure) const {
        std::vector<double> values;
        for (const Measured& each : measured) {
            values.push_back(each.figures.at(figure));
        }
        return values;
    }
    std::vector<double> BytesOfACell() const {
        std::vector<double> bytes = All(2);
        for (double& each : bytes) {
            each /= Cells();
        }
        return bytes;
    }
    double MedianOf(std::size_t figure) const { return Median(All(figure)); }
    double Cells() const { return MedianOf(3) * MedianOf(4); }
    std::vector<std::string> Row(const std::string& name, bool reads) const {
        const std::vector<double> seconds = All(0);
        double peak = 0;
        for (const Measured& each : measured) {
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

bool BenchListing(const Setting& setting, const std::string& path) {
    std::fprintf(setting.details, "\nListing inbound lines of a book of %lld, %d warehouses; %d runs, in seconds\n",
                 static_cast<long long>(setting.size.lines), setting.size.depots, setting.runs);
    std::vector<std::vector<std::string>> table = {
        {"", "rows", "min", "median", "max", "ns a cell", "ns to read it", "bytes a cell", "peak MiB"}};
    bool same = true;
    double text = 0;
    for (const int depot : {1, 0}) {
        ListingRuns component;
        ListingRuns hand;
        for (int run = 0; run < setting.runs; ++run) {
            component.measured.push_back(InChild([&] { return ListByComponent(path, depot); }));
            hand.measured.push_back(InChild([&] { return ListByHand(path, depot); }));
        }
        const std::string which = depot > 0 ? "one warehouse" : "whole book";
        table.push_back(component.Row(which + ": rs入库记录", true));
        table.push_back(hand.Row(which + ": sqlite3_step loop", false));
        same = same && component.MedianOf(3) == hand.MedianOf(3) && SameLines(path, depot);
        text = hand.MedianOf(5) / hand.Cells();
        if (depot > 0) continue;
        const std::string work = "rs入库记录, all " + Fixed(component.MedianOf(3), 0) + " lines";
        const char* rival = "sqlite3_step, every column copied";
        setting.results->Add({work, rival, "s", 3, component.All(0), hand.All(0), RatioUpTo(1.5)});
        constexpr double kBytesOfACell = 16;
        setting.results->Add({work + ": bytes a cell, " + Fixed(text, 1) + " of them text", rival, "bytes", 1,
                              component.BytesOfACell(), hand.BytesOfACell(), UpTo(kBytesOfACell + text)});
    }
    PrintTable(setting.details, table);
    std::fprintf(setting.details, "  Text makes up %s bytes a cell. The cells %s.\n", Fixed(text, 1).c_str(),
                 same ? "agree" : "do not agree");
    return same;
}

}  // namespace kpTables::bench
