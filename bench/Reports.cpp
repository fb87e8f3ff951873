#include "Reports.h"

#include <string>

namespace kpTables::bench {

namespace {

struct BillFilter {
    Variant first;
    Variant last;
    Variant firstNumber;
    Variant lastNumber;
    Variant depot;
};

RecordsetPtr BillList(CTables& tables, const BillFilter& filter) {
    return tables.rs单据列表("入库", {}, filter.first, filter.last, filter.firstNumber, filter.lastNumber, filter.depot,
                             {}, 0, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {});
}

/// The lines are added up by their keys only; the rest is looked up for the sums.
std::string BillListByHand(const std::string& where) {
    return "SELECT L.年份, L.月份, L.日子, L.单据类型, L.类型, L.单据编号, S.q, S.net, S.tax, S.gross, L.BillID, "
           "L.录入员, "
           "L.录入日期, L.审核员, L.审核日期, L.说明, D.仓库名称, K.企业名称, P.项目名称, P.项目编号 "
           "FROM (SELECT B.BillID AS bill, SUM(R.数量) AS q, SUM(R.除税金额) AS net, SUM(R.税额) AS tax, "
           "SUM(R.金额) AS gross FROM 入库目录 AS B LEFT JOIN 入库记录 AS R ON R.BillID = B.BillID " +
           where +
           " GROUP BY B.BillID, R.dpID) AS S CROSS JOIN 入库目录 AS L ON L.BillID = S.bill "
           "LEFT JOIN 仓库设置 AS D ON D.dpID = L.dpID LEFT JOIN 厂商资料 AS K ON K.KSID = L.ksID "
           "LEFT JOIN 项目设置 AS P ON P.项目ID = L.pjID ORDER BY L.月份, L.单据类型, L.单据编号";
}

ReportCase BillListCase(const std::string& name, bool isSQL, const BillFilter& filter, const std::string& where) {
    return {"rs单据列表, " + name + (isSQL ? ", SQL Server" : ", Jet"),
            isSQL,
            [filter](CTables& tables) { return BillList(tables, filter); },
            BillListByHand(where),
            "kkkkkkqmmmkkdkdkkkkk",
            true,
            1.3,
            "left joins by hand"};
}

void AddBillLists(std::vector<ReportCase>& cases) {
    const BillFilter june{"2003-6-1", "2003-6-30", {}, {}, {}};
    const std::string juneByHand = "WHERE B.年份 = 2003 AND B.月份 = 6 AND B.日子 BETWEEN 1 AND 30";
    for (const bool isSQL : {false, true}) {
        cases.push_back(BillListCase("all bills", isSQL, {}, ""));
        cases.push_back(BillListCase("one warehouse", isSQL, {{}, {}, {}, {}, 1}, "WHERE B.dpID = 1"));
        cases.push_back(BillListCase("one month", isSQL, june, juneByHand));
        cases.push_back(BillListCase("a range of numbers", isSQL, {{}, {}, "RK1-1", "RK1-2", {}},
                                     "WHERE B.单据编号 BETWEEN 'RK1-1' AND 'RK1-2'"));
    }
}

/// Sorts the lines by product: cheaper, in a book of any size, than fetching them in the order of the index.
ReportCase ProductSums(const std::string& name, int month, int depot, const std::string& where) {
    return {"rs商品汇总, " + name,
            false,
            [month, depot](CTables& tables) {
                const auto only = static_cast<std::int16_t>(month);
                return tables.rs商品汇总("入库", only, only, depot, 0, "");
            },
            "SELECT S.pdID, S.q, S.price, S.net, S.tax, S.prices, S.net, P.商品名称, P.商品编号, P.规格, P.型号, "
            "P.计量单位, P.进位方法, P.最低库存, P.最高库存, P.ClassCode FROM (SELECT R.pdID, SUM(R.数量) AS q, "
            "AVG(R.单价) / 10000.0 AS price, SUM(R.除税金额) AS net, SUM(R.税额) AS tax, SUM(R.除税单价) AS prices "
            "FROM 入库记录 AS R INNER JOIN 入库目录 AS L ON L.BillID = R.BillID " +
                where + " GROUP BY +R.pdID) AS S LEFT JOIN 商品设置 AS P ON P.pdID = S.pdID",
            "kqqmmmmkkkkkkqqk",
            false,
            0,
            "lines added up by hand, then looked up"};
}

ReportCase DaySums(const std::string& name, bool isSQL) {
    return {"rs日报记录, " + name,
            isSQL,
            [](CTables& tables) { return tables.rs日报记录(0, 0, Date::FromYearMonthDay(2003, 6, 15), "出库"); },
            "SELECT P.ClassCode, S.pdID, P.商品名称, P.商品编号, P.规格, P.型号, P.计量单位, P.进位方法, P.最低库存, "
            "P.最高库存, S.q, S.price, S.net, S.tax, S.gross FROM (SELECT R.pdID, SUM(R.数量) AS q, "
            "AVG(R.除税单价) / 10000.0 AS price, SUM(R.除税金额) AS net, SUM(R.税额) AS tax, SUM(R.金额) AS gross "
            "FROM 出库目录 AS L INNER JOIN 出库记录 AS R ON R.BillID = L.BillID "
            "WHERE L.年份 = 2003 AND L.月份 = 6 AND L.日子 = 15 GROUP BY R.pdID) AS S "
            "INNER JOIN 商品设置 AS P ON P.pdID = S.pdID ORDER BY P.ClassCode, P.商品编号",
            "kkkkkkkkqqqqmmm",
            true,
            2,
            "by hand on the index of dates"};
}

/// Adds up by bill first, in the order of the lines' index, so that no line is sorted.
std::string ProjectsByHand(const std::string& sums, const std::string& shown) {
    return "SELECT S.pjID, P.ClassCode, P.项目名称, P.工程名称, P.项目编号, P.工程性质, " + shown +
           " FROM (SELECT L.pjID, " + sums +
           " FROM (SELECT BillID, SUM(数量) AS q, SUM(金额) AS gross FROM 出库记录 GROUP BY BillID) AS R "
           "CROSS JOIN 出库目录 AS L ON L.BillID = R.BillID GROUP BY L.pjID) AS S "
           "LEFT JOIN 项目设置 AS P ON P.项目ID = S.pjID";
}

/// The expression of the months' columns.
struct MonthColumns {
    std::string sums;
    std::string shown;
    std::string kinds;
};

MonthColumns ColumnsOfMonths(int count, const std::string& begin, const std::string& end, char kind) {
    MonthColumns columns;
    for (int month = 1; month <= count; ++month) {
        const std::string number = std::to_string(month);
        columns.sums.append(", ").append(begin).append(number).append(end).append(number);
        columns.shown.append(month == 1 ? "S.m" : ", S.m").append(number);
        columns.kinds += kind;
    }
    return columns;
}

void AddProjects(std::vector<ReportCase>& cases) {
    const std::string byBill = "added up by bill by hand";
    const auto ask = [](CTables& tables) { return tables.rs项目汇总表(std::string("金额")); };
    const MonthColumns crosstab = ColumnsOfMonths(11, "SUM(R.gross) FILTER (WHERE L.月份 = ", ") AS m", 'm');
    cases.push_back(
        {"rs项目汇总表, Jet", false, ask,
         ProjectsByHand("SUM(R.q) AS q, SUM(R.gross) AS gross" + crosstab.sums, "S.q, S.gross, " + crosstab.shown),
         "kkkkkkqm" + crosstab.kinds, false, 0, byBill});
    const MonthColumns cases12 = ColumnsOfMonths(12, "TOTAL(R.q) FILTER (WHERE L.月份 = ", ") AS m", 'q');
    cases.push_back({"rs项目汇总表, SQL Server", true, ask,
                     ProjectsByHand("SUM(R.q) AS q" + cases12.sums, cases12.shown + ", S.q"),
                     "kkkkkk" + cases12.kinds + "q", false, 0, byBill});
}

}  // namespace

std::vector<ReportCase> Reports() {
    std::vector<ReportCase> cases;
    AddBillLists(cases);
    cases.push_back(ProductSums("all lines", 0, 0, ""));
    cases.push_back(ProductSums("one warehouse's month", 6, 1, "WHERE L.dpID = 1 AND L.月份 = 6"));
    cases.push_back(DaySums("one day, Jet", false));
    cases.push_back(DaySums("one day, SQL Server", true));
    AddProjects(cases);
    return cases;
}

}  // namespace kpTables::bench
