// Closing a month, beside the statements that a specialist would write.
#include <stdexcept>
#include <string>
#include <vector>

#include "../Report.h"
#include "Benchmarks.h"
#include "Books.h"
#include "Server.h"
#include "kpTables/Book.h"
#include "kpTables/CTables.h"

namespace kpTables::bench {

namespace {

constexpr int kMonth = 11;
constexpr const char* kNote = "2003-11-28";

std::string Sums(const std::string& family, const std::string& compare) {
    return "(SELECT \"pdID\", AVG(除税单价) / 10000.0 AS price, SUM(数量) AS quantity, SUM(除税金额)::bigint AS amount "
           "FROM " +
           family + "记录 WHERE \"BillID\" IN (SELECT \"BillID\" FROM " + family + "目录 WHERE \"dpID\" = 1 AND 月份 " +
           compare + " 11) GROUP BY \"pdID\")";
}

/// The closing of the embedded engine's comparison: a statement for each movement, and one for the figures of the
/// month.
std::string MovementUpdate(const std::string& family, const std::string& assignments, const std::string& compare) {
    return "UPDATE 仓库余额表 AS b SET " + assignments + " FROM " + Sums(family, compare) +
           " AS moved WHERE b.\"pdID\" = moved.\"pdID\" AND \"dpID\" = 1 AND 月份 = 11";
}

std::vector<std::string> MonthStatements() {
    const auto month = [](const std::string& way) {
        return "本期" + way + "单价 = moved.price, 本期" + way + "数量 = moved.quantity, 本期" + way +
               "金额 = moved.amount";
    };
    const auto total = [](const std::string& way) {
        return "累计" + way + "数量 = moved.quantity, 累计" + way + "金额 = moved.amount";
    };
    const std::string figures =
        "UPDATE 仓库余额表 SET 本期库存数量 = 上期库存数量 + 本期入库数量 - 本期出库数量, 本期库存金额 = 上期库存金额 + "
        "本期入库金额 - 本期出库金额, 本期库存单价 = CASE WHEN 上期库存数量 + 本期入库数量 - 本期出库数量 > 0 THEN "
        "(上期库存金额 + 本期入库金额 - 本期出库金额) / 10000.0 / (上期库存数量 + 本期入库数量 - 本期出库数量) ELSE 0 END "
        "WHERE \"dpID\" = 1 AND 月份 = 11";
    return {MovementUpdate("入库", month("入库"), "="), MovementUpdate("出库", month("出库"), "="),
            MovementUpdate("入库", total("入库"), "<="), MovementUpdate("出库", total("出库"), "<="), figures};
}

/// One statement for all figures of the month: each row is written once.
std::string FillMonth() {
    return "UPDATE 仓库余额表 AS b SET 本期入库单价 = n.ip, 本期入库数量 = n.iq, 本期入库金额 = n.ia, 累计入库数量 = n.yiq, "
           "累计入库金额 = n.yia, 本期出库单价 = n.op, 本期出库数量 = n.oq, 本期出库金额 = n.oa, 累计出库数量 = n.yoq, "
           "累计出库金额 = n.yoa, 本期库存数量 = n.q, 本期库存金额 = n.a, 本期库存单价 = CASE WHEN n.q > 0 THEN n.a / "
           "10000.0 / n.q ELSE 0 END FROM (SELECT o.kp_row, COALESCE(i.price, o.本期入库单价) AS ip, COALESCE(i.quantity, "
           "o.本期入库数量) AS iq, COALESCE(i.amount, o.本期入库金额) AS ia, COALESCE(yi.quantity, o.累计入库数量) AS yiq, "
           "COALESCE(yi.amount, o.累计入库金额) AS yia, COALESCE(u.price, o.本期出库单价) AS op, COALESCE(u.quantity, "
           "o.本期出库数量) AS oq, COALESCE(u.amount, o.本期出库金额) AS oa, COALESCE(yu.quantity, o.累计出库数量) AS yoq, "
           "COALESCE(yu.amount, o.累计出库金额) AS yoa, o.上期库存数量 + COALESCE(i.quantity, o.本期入库数量) - "
           "COALESCE(u.quantity, o.本期出库数量) AS q, o.上期库存金额 + COALESCE(i.amount, o.本期入库金额) - "
           "COALESCE(u.amount, o.本期出库金额) AS a FROM 仓库余额表 AS o LEFT JOIN " +
           Sums("入库", "=") + " AS i USING (\"pdID\") LEFT JOIN " + Sums("出库", "=") +
           " AS u USING (\"pdID\") LEFT JOIN " + Sums("入库", "<=") + " AS yi USING (\"pdID\") LEFT JOIN " +
           Sums("出库", "<=") +
           " AS yu USING (\"pdID\") WHERE o.\"dpID\" = 1 AND o.月份 = 11) AS n WHERE b.kp_row = n.kp_row";
}

constexpr const char* kNextMonth =
    "INSERT INTO 仓库余额表 (年份, 月份, \"pdID\", \"dpID\", 上期库存单价, 上期库存数量, 上期库存金额, 本期库存单价, "
    "本期库存数量, 本期库存金额, 备注) SELECT 年份, 月份 + 1, \"pdID\", \"dpID\", 本期库存单价, 本期库存数量, "
    "本期库存金额, 本期库存单价, 本期库存数量, 本期库存金额, '2003-11-28' FROM 仓库余额表 WHERE \"dpID\" = 1 AND 月份 = 11";

Cost ByComponent(const std::string& book) {
    CTables tables;
    const auto connection = OpenBook(BookAddress(book));
    tables.Cnn(connection);
    const CostMeter meter;
    connection->BeginTrans();
    if (!tables.Close_DepotBalance(1, kMonth, false, Variant(kNote)))
        throw std::runtime_error("Close_DepotBalance answered False");
    connection->CommitTrans();
    return meter.Read();
}

Cost ByHand(const std::string& book, const std::vector<std::string>& month) {
    const Server server(ServerAddress(), book);
    const CostMeter meter;
    server.Run("BEGIN");
    for (const std::string& statement : month) server.Run(statement);
    server.Run(kNextMonth);
    server.Run("COMMIT");
    return meter.Read();
}

/// Every figure of every row: money and keys to the last digit, doubles to twelve.
bool SameBalances(const std::string& left, const std::string& right) {
    std::string columns;
    for (const char* name : {"上期库存单价", "上期库存数量", "本期入库单价", "本期入库数量", "累计入库数量",
                             "本期出库单价", "本期出库数量", "累计出库数量", "本期库存单价", "本期库存数量"})
        columns.append(", round(").append(name).append("::numeric, 6)");
    for (const char* name :
         {"上期库存金额", "本期入库金额", "累计入库金额", "本期出库金额", "累计出库金额", "本期库存金额", "备注"})
        columns.append(", ").append(name);
    const auto rows = [&](const std::string& book) {
        return "SELECT 年份, 月份, \"pdID\", \"dpID\"" + columns + " FROM \"" + book + "\".仓库余额表";
    };
    const Server server(ServerAddress());
    const ServerRows different = server.Run("SELECT (SELECT count(*) FROM (" + rows(left) + " EXCEPT " + rows(right) +
                                            ") AS d), (SELECT count(*) FROM \"" + left +
                                            "\".仓库余额表), (SELECT count(*) FROM \"" + right + "\".仓库余额表)");
    return different.Text(0, 0) == "0" && different.Text(0, 1) == different.Text(0, 2);
}

}  // namespace

bool BenchServerClosing(const ServerSetting& setting) {
    struct Rival {
        std::string name;
        std::vector<std::string> month;
        Goal goal;
    };
    const std::vector<Rival> rivals = {
        {"set-based SQL by hand", MonthStatements(), RatioUpTo(1.1)},
        {"the same in one statement, which writes each row once", {FillMonth()}, {}},
    };
    BookSize size = setting.size;
    size.depots = 1;
    MakeServerBook("closing", size, setting.folder);
    bool same = true;
    for (const Rival& rival : rivals) {
        Row processor{"Close_DepotBalance, " + std::to_string(size.products) + " balance rows, " +
                          std::to_string(size.lines) + " lines a direction",
                      rival.name,
                      "CPU s",
                      3,
                      {},
                      {},
                      rival.goal};
        Row seconds = processor;
        seconds.unit = "s";
        seconds.goal = {};
        for (int run = 0; run < setting.runs; ++run) {
            CloneServerBook("closing", "component");
            const Cost ours = ByComponent("component");
            CloneServerBook("closing", "hand");
            Note(processor, seconds, ours, ByHand("hand", rival.month));
            same = same && SameBalances("component", "hand");
        }
        setting.results->Add(processor);
        setting.results->Add(seconds);
    }
    for (const char* book : {"component", "hand", "closing"}) DropServerBook(book);
    return same;
}

}  // namespace kpTables::bench
