// Outbound goods per project and month.
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

const char* const kGroups =
    "GROUP BY BILLLIST.pjID,BillLIST.ClassCode, BILLLIST.项目名称, BILLLIST.工程名称, BILLLIST.项目编号,"
    "BILLLIST.工程性质";

/// Outbound lines with their projects; month is how the column of the month is selected.
std::string LinesWithProjects(const std::string& month) {
    return "(SELECT Lst.pjID, Proj.ClassCode,Proj.项目名称,Proj.项目编号,Proj.工程名称,Proj.工程性质, " + month +
           ", Rec.数量, Rec.除税金额, Rec.税额, Rec.金额 FROM (出库目录 AS Lst INNER JOIN 出库记录 AS Rec "
           "ON Lst.BillID = Rec.BillID) LEFT JOIN 项目设置 As Proj ON Lst.pjID = Proj.项目ID)";
}

/// A column for each of the twelve months; the measure is the quantity whatever is asked for.
std::string ServerSummary() {
    constexpr const char* kMonths[] = {"一", "二", "三", "四", "五", "六", "七", "八", "九", "十", "十一", "十二"};
    std::string months;
    for (std::int32_t month = 1; const char* name : kMonths) {
        // The first month's piece begins in capitals, the others in small letters.
        const bool first = month == 1;
        months += (first ? "SUM(CASE 月份 when " : "sum(case 月份 when ") + Text(month) +
                  " then billlist.数量 else 0 end) as " + name + ",";
        ++month;
    }
    return "SELECT BILLLIST.pjID AS pjID,BILLLIST.ClassCode,BILLLIST.项目名称 AS 项目名称, "
           "BILLLIST.工程名称 AS 工程名称, BILLLIST.项目编号 AS 项目编号,BILLLIST.工程性质," +
           months + "Sum(BILLLIST.数量) As 合计 FROM " + LinesWithProjects("Lst.月份 AS 月份") + " AS BILLLIST " +
           kGroups;
}

/// A column for each month that occurs. Proj.ClassCode names a table of the sub-query.
std::string JetSummary(const std::string& measure) {
    return "TRANSFORM Sum(BILLLIST." + measure +
           ") AS 月合计 SELECT BILLLIST.pjID AS pjID, Proj.ClassCode,BILLLIST.项目名称 AS 项目名称, "
           "BILLLIST.工程名称 AS 工程名称, BILLLIST.项目编号 AS 项目编号,BILLLIST.工程性质, "
           "Sum(BILLLIST.数量) AS 合计 FROM " +
           LinesWithProjects("Lst.月份") + " AS BILLLIST " + kGroups + " PIVOT BILLLIST.月份";
}

}  // namespace

RecordsetPtr CTables::rs项目汇总表(InOut<std::string> rWhich) {
    if (rWhich.get() != "金额") rWhich = std::string("数量");
    return db::Execute(cnn_, isSQL_ ? ServerSummary() : JetSummary(rWhich));
}

}  // namespace kpTables
