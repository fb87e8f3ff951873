// Importing a file, beside COPY of the same rows.
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "../Program.h"
#include "../Report.h"
#include "Benchmarks.h"
#include "Books.h"
#include "Server.h"
#include "kpTables/Book.h"

namespace kpTables::bench {

namespace {

struct ImportCase {
    const char* table;
    const char* columns;  ///< of the file, those of COPY in quotes
    const char* names;
    std::int64_t share;  ///< one row for this many lines
    std::string (*row)(std::int64_t row, bool scaled);
};

/// As a file has an amount, or as the server stores it.
std::string Money(std::int64_t amount, bool scaled) {
    if (scaled) return std::to_string(amount);
    char text[40];
    std::snprintf(text, sizeof text, "%lld.%04lld", static_cast<long long>(amount / 10'000),
                  static_cast<long long>(amount % 10'000));
    return text;
}

std::string Line(std::int64_t row, bool scaled) {
    const std::int64_t price = 50'000 + row * 7919 % 950'000;
    const std::int64_t quantity = 1 + row % 64;
    const std::int64_t net = price * quantity;
    const std::int64_t tax = net * 17 / 100;
    std::string text = std::to_string(1 + row / 10) + "," + std::to_string(1 + row * 31 % 100'000) + ",1," +
                       Money(price * 117 / 100, scaled) + "," + std::to_string(quantity);
    for (const std::int64_t amount : {net + tax, tax, price, net}) text += "," + Money(amount, scaled);
    return text + ",陈建国,王丽华,纸箱,A-" + std::to_string(row % 100) + "," + std::to_string(row % 30);
}

std::string ProductRow(std::int64_t row, bool /*scaled*/) {
    return std::to_string(row + 1) + ",商品" + std::to_string(row * 7919 % 1'000'003) + ",SP" +
           std::to_string(row + 1) + "," + std::to_string(1 + row % 200) + ",01,规格" + std::to_string(row % 50) +
           ",B" + std::to_string(row % 1000) + ",吨," + std::to_string(row % 900) + ".125,69" + std::to_string(row);
}

constexpr ImportCase kCases[] = {
    {"入库记录", "\"BillID\",\"pdID\",\"dpID\",单价,数量,金额,税额,除税单价,除税金额,经手人,交接人,包装,货位,仓库",
     "BillID,pdID,dpID,单价,数量,金额,税额,除税单价,除税金额,经手人,交接人,包装,货位,仓库", 1, Line},
    {"商品设置", "\"pdID\",商品名称,商品编号,\"KSID\",\"ClassCode\",规格,型号,计量单位,默认单价,商品条码",
     "pdID,商品名称,商品编号,KSID,ClassCode,规格,型号,计量单位,默认单价,商品条码", 10, ProductRow},
};

bool SameTables(const ImportCase& import, std::int64_t rows) {
    const Server server(ServerAddress());
    const auto all = [&](const char* book) {
        return std::string("SELECT ") + import.columns + " FROM \"" + book + "\"." + import.table;
    };
    const ServerRows found = server.Run("SELECT count(*), (SELECT count(*) FROM (" + all("component") + " EXCEPT " +
                                        all("hand") + ") AS d) FROM \"component\"." + import.table);
    return found.Text(0, 0) == std::to_string(rows) && found.Text(0, 1) == "0";
}

bool ImportInTurns(const ServerSetting& setting, const ImportCase& import) {
    const std::int64_t rows = std::max<std::int64_t>(1, setting.size.lines / import.share);
    const std::string path = setting.folder + "/import.csv";
    std::string copied;
    std::ofstream file(path);
    file << import.names << '\n';
    for (std::int64_t row = 0; row < rows; ++row) {
        file << import.row(row, false) << '\n';
        copied += import.row(row, true) + '\n';
    }
    file.close();
    Row processor{"kpbook import, " + std::to_string(rows) + " CSV lines into " + import.table,
                  "COPY of the same rows",
                  "CPU s",
                  3,
                  {},
                  {},
                  RatioUpTo(1.3)};
    Row seconds = processor;
    seconds.unit = "s";
    seconds.goal = {};
    bool same = true;
    for (int run = 0; run < setting.runs; ++run) {
        for (const char* book : {"component", "hand"}) {
            DropServerBook(book);
            CreateBook(BookAddress(book));
        }
        const Server server(ServerAddress(), "hand");
        const CostMeter ours;
        RunProgram({KPBENCH_KPBOOK, "import", BookAddress("component"), import.table, path});
        const Cost our = ours.Read();
        const CostMeter theirs;
        server.CopyIn(std::string("COPY ") + import.table + " (" + import.columns + ") FROM STDIN (FORMAT csv)",
                      copied);
        Note(processor, seconds, our, theirs.Read());
        same = same && SameTables(import, rows);
    }
    for (const char* book : {"component", "hand"}) DropServerBook(book);
    setting.results->Add(processor);
    setting.results->Add(seconds);
    return same;
}

}  // namespace

bool BenchServerImport(const ServerSetting& setting) {
    bool same = true;
    for (const ImportCase& import : kCases) same = ImportInTurns(setting, import) && same;
    return same;
}

}  // namespace kpTables::bench
