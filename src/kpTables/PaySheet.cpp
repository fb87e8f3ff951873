// The drivers' monthly pay sheet.
#include <array>
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Clauses.h"
#include "kpTables/Error.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// Columns of amounts whose grid columns bear their names as keys.
constexpr std::array<std::string_view, 24> kAmounts = {
    "总收入", "油费",   "外加油费", "过路费", "装卸费", "折旧",  "保险",   "利润",
    "税金",   "养路费", "装卸工资", "费用1",  "费用2",  "费用3", "总费用", "其它1",
    "其它2",  "其它3",  "应付",     "所得税", "电话费", "扣款1", "扣款2",  "扣款3",
};

std::string NewSheet(std::int16_t month) {
    return Fill(
        "SELECT Lst.司机 As 姓名, Sum(Lst.货款) As 总收入 FROM 派遣目录 AS Lst Where (Lst.月份) = {month} "
        "GROUP BY Lst.司机",
        "month"_gap(month));
}

std::string SummedSheets(const std::string& upTo) {
    return Fill(
        "SELECT s.姓名, Sum(s.总收入) AS 总收入, Sum(s.油费) AS 油费, Sum(s.外加油费) AS 外加油费,"
        "Sum(s.过路费) As 过路费,Sum(s.装卸费) AS 装卸费, Sum(s.折旧) AS 折旧, Sum(s.保险) AS 保险, "
        "Sum(s.利润) AS 利润, Sum(s.税金) AS 税金, Sum(s.养路费) AS 养路费, Sum(s.装卸工资) AS 装卸工资, "
        "Sum(s.费用1) AS 费用1, Sum(s.费用2) AS 费用2, Sum(s.费用3) AS 费用3, Sum(s.总费用) AS 总费用, "
        "Sum(s.其它1) AS 其它1, Sum(s.其它2) AS 其它2, Sum(s.其它3) AS 其它3, Sum(s.应付) AS 应付, "
        "Sum(s.所得税) AS 所得税, Sum(s.电话费) AS 电话费, Sum(s.扣款1) AS 扣款1, Sum(s.扣款2) AS 扣款2, "
        "Sum(s.扣款3) AS 扣款3, Sum(s.实发工资) AS 实发工资, s.Flag, s.备注 FROM 工资表 AS s {upTo} "
        "GROUP BY s.姓名, s.Flag, s.备注",
        "upTo"_gap(upTo));
}

/// One row of the caller's grid, its columns found by key.
class GridRow {
public:
    GridRow(const Grid& grid, std::int32_t row) : grid_(grid), row_(row) {}
    std::string TextOf(std::string_view key) const { return grid_.TextMatrix(row_, grid_.ColIndex(key)); }
    double ValueOf(std::string_view key) const { return grid_.ValueMatrix(row_, grid_.ColIndex(key)); }

private:
    const Grid& grid_;
    std::int32_t row_;
};

void AddPay(Recordset& sheet, std::int16_t year, std::int16_t month, const GridRow& row) {
    sheet.AddNew();
    sheet.Fields("年份").SetValue(year);
    sheet.Fields("月份").SetValue(month);
    sheet.Fields("姓名").SetValue(row.TextOf("姓名"));
    for (const std::string_view amount : kAmounts) sheet.Fields(amount).SetValue(row.ValueOf(amount));
    sheet.Fields("实发工资").SetValue(row.ValueOf("实发"));
    // The blank keeps an empty remark from being a zero-length text.
    sheet.Fields("备注").SetValue(row.TextOf("备注") + " ");
    sheet.Update();
}

}  // namespace

RecordsetPtr CTables::rs工资表(std::int16_t rMonth1, InOut<std::int16_t> rMonth2, InOut<bool> rCreate) {
    if (rCreate.get()) return db::Query(cnn_, NewSheet(rMonth1));
    if (rMonth1 < 1) return db::Query(cnn_, SummedSheets(rMonth1 == 0 ? IdClause(" Where s.月份<={id}", rMonth2) : ""));
    return db::Query(cnn_, Fill("Select * From 工资表 Where 月份={month}", "month"_gap(rMonth1)));
}

bool CTables::Update工资表(std::int16_t rYear, std::int16_t rMonth, InOut<GridPtr> rfg) {
    db::Execute(cnn_, Fill("Delete From 工资表 Where 月份={month}", "month"_gap(rMonth)));
    const auto sheet = db::OpenTable(cnn_, "工资表");
    if (!rfg.get()) Raise(ErrorNumber::ObjectNotSet);
    const Grid& grid = *rfg.get();
    // With one header row this leaves out the last row, which holds the totals.
    const std::int32_t last = grid.Rows() - grid.FixedRows() - 1;
    for (std::int32_t row = grid.FixedRows(); row <= last; ++row) AddPay(*sheet, rYear, rMonth, GridRow(grid, row));
    sheet->Close();
    return true;
}

}  // namespace kpTables
