// Bill dates, and what the free-text columns of bill lines hold.
#include <algorithm>
#include <array>
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Clauses.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

bool IsFreeText(std::string_view column) {
    constexpr std::array<std::string_view, 4> kColumns = {"经手人", "交接人", "包装", "货位"};
    return std::find(kColumns.begin(), kColumns.end(), column) != kColumns.end();
}

/// Distinct dates of both directions in SQL Server's dialect; label names the column.
std::string ServerDates(std::string_view label) {
    return Fill("select distinct {date}{label} from 入库目录 union select distinct {date} from 出库目录",
                "date"_gap(BillDate(true)), "label"_gap(label));
}

}  // namespace

RecordsetPtr CTables::rs单据日期列表() {
    if (!isSQL_)
        return db::Query(cnn_,
                         "SELECT Distinct CDATE([list1].年份 & '-' &  [list1].月份 & '-' & [list1].日子) AS 日期 "
                         "FROM 入库目录 as list1  "
                         "ORDER BY CDATE([list1].年份 & '-' &  [list1].月份 & '-' & [list1].日子) "
                         "UNION (SELECT Distinct CDATE([list2].年份 & '-' &  [list2].月份 & '-' & [list2].日子) "
                         "AS 日期 FROM 出库目录 AS list2 "
                         "ORDER BY CDATE([list2].年份 & '-' &  [list2].月份 & '-' & [list2].日子))");
    // The first of the two is only asked for.
    db::Execute(cnn_, ServerDates(""));
    auto dates = db::Query(cnn_, ServerDates(" AS 日期"));
    dates->Sort("日期");
    return dates;
}

RecordsetPtr CTables::rs入库扩展列表(InOut<std::string> rWho, InOut<std::int16_t> rMonth, InOut<std::int32_t> rdpID) {
    const std::string& column = rWho;
    if (!IsFreeText(column)) return nullptr;
    return db::Query(cnn_, Fill("Select Distinct {column} From 入库记录 Where BillID in (Select billID From 入库目录 "
                                "Where True {ofMonth}{ofWarehouse}) Order by {column}",
                                "column"_gap(column), "ofMonth"_gap(IdClause(" And 月份={id}", rMonth)),
                                "ofWarehouse"_gap(IdClause(" And dpID={id}", rdpID))));
}

// Unlike in the inbound list, all lines count, whatever the month and the warehouse; kept for compatibility.
RecordsetPtr CTables::rs出库扩展列表(InOut<std::string> rWho, InOut<std::int16_t> /*rMonth*/,
                                     InOut<std::int32_t> /*rdpID*/) {
    const std::string& column = rWho;
    if (!IsFreeText(column)) return nullptr;
    return db::Query(cnn_, Fill("Select Distinct {column} From 出库记录  Order by {column}", "column"_gap(column)));
}

// Unlike in the inbound list, the month counts even when it is 0; kept for compatibility.
RecordsetPtr CTables::rs出库扩展合计(InOut<std::string> rWho, InOut<std::int16_t> rMonth, InOut<std::int32_t> rdpID) {
    const std::string& column = rWho;
    if (!IsFreeText(column)) return nullptr;
    return db::Query(
        cnn_, Fill("Select pdID,{column},Sum(数量) as 数量,sum(除税金额) as 金额 From 出库记录 "
                   "Where BillID in (Select billID From 出库目录 Where True  And 月份={month}{ofWarehouse}) "
                   "Group by pdID,{column}",
                   "column"_gap(column), "month"_gap(rMonth), "ofWarehouse"_gap(IdClause(" And dpID={id}", rdpID))));
}

}  // namespace kpTables
