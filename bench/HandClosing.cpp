#include "HandClosing.h"

#include <array>

namespace kpTables::bench {

namespace {

/// Writes the month or the year to date of one family of bills into the balance rows of its products.
std::string MovementUpdate(const std::string& family, const std::string& assignments, const std::string& compare) {
    return "UPDATE 仓库余额表 SET " + assignments +
           " FROM (SELECT pdID AS product, AVG(除税单价) / 10000.0 AS price, SUM(数量) AS quantity, SUM(除税金额) AS "
           "amount FROM " +
           family + "记录 WHERE BillID IN (SELECT BillID FROM " + family + "目录 WHERE dpID = ?1 AND 月份 " + compare +
           " ?2) GROUP BY pdID) AS moved WHERE pdID = moved.product AND dpID = ?1 AND 月份 = ?2";
}

std::array<std::string, 5> MonthStatements() {
    const auto month = [](const std::string& way) {
        return "本期" + way + "单价 = moved.price, 本期" + way + "数量 = moved.quantity, 本期" + way +
               "金额 = moved.amount";
    };
    const auto total = [](const std::string& way) {
        return "累计" + way + "数量 = moved.quantity, 累计" + way + "金额 = moved.amount";
    };
    return {MovementUpdate("入库", month("入库"), "="), MovementUpdate("出库", month("出库"), "="),
            MovementUpdate("入库", total("入库"), "<="), MovementUpdate("出库", total("出库"), "<="),
            "UPDATE 仓库余额表 SET 本期库存数量 = 上期库存数量 + 本期入库数量 - 本期出库数量, "
            "本期库存金额 = 上期库存金额 + 本期入库金额 - 本期出库金额, "
            "本期库存单价 = CASE WHEN 上期库存数量 + 本期入库数量 - 本期出库数量 > 0 "
            "THEN (上期库存金额 + 本期入库金额 - 本期出库金额) / 10000.0 / (上期库存数量 + 本期入库数量 - "
            "本期出库数量) ELSE 0 END "
            "WHERE dpID = ?1 AND 月份 = ?2"};
}

constexpr const char* kNextMonth =
    "INSERT INTO 仓库余额表 (年份, 月份, pdID, dpID, 上期库存单价, 上期库存数量, 上期库存金额, 本期库存单价, "
    "本期库存数量, "
    "本期库存金额, 备注) SELECT 年份, 月份 + 1, pdID, dpID, 本期库存单价, 本期库存数量, 本期库存金额, 本期库存单价, "
    "本期库存数量, "
    "本期库存金额, ?3 FROM 仓库余额表 WHERE dpID = ?1 AND 月份 = ?2";

}  // namespace

void CloseByHand(const RawDatabase& database, int depot, int month, const std::string& note) {
    database.Run("BEGIN IMMEDIATE");
    for (const std::string& text : MonthStatements()) {
        database.Prepare(text).Bind(1, std::int64_t{depot}).Bind(2, std::int64_t{month}).Run();
    }
    if (month < 12) {
        RawStatement next = database.Prepare(kNextMonth);
        next.Bind(1, std::int64_t{depot}).Bind(2, std::int64_t{month}).Bind(3, note.c_str()).Run();
    }
    database.Run("COMMIT");
}

}  // namespace kpTables::bench
