// The table of the drivers' pay and a grid of it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kpTables/MemoryGrid.h"
#include "support/ScriptedRecordset.h"

namespace kpTables::test {

/// Columns of amounts, in the table's order.
inline constexpr const char* kPayAmounts[] = {"总收入", "油费",   "外加油费", "过路费", "装卸费",   "折旧",
                                              "保险",   "利润",   "税金",     "养路费", "装卸工资", "费用1",
                                              "费用2",  "费用3",  "总费用",   "其它1",  "其它2",    "其它3",
                                              "应付",   "所得税", "电话费",   "扣款1",  "扣款2",    "扣款3"};

/// The empty table.
inline std::shared_ptr<ScriptedRecordset> PaySheet() {
    std::vector<FieldInfo> columns = {
        {"年份", VarType::Integer}, {"月份", VarType::Integer}, {"姓名", VarType::String}};
    for (const char* each : kPayAmounts) columns.push_back({each, VarType::Currency});
    columns.push_back({"实发工资", VarType::Currency});
    columns.push_back({"Flag", VarType::String});
    columns.push_back({"备注", VarType::String});
    return MakeRows(std::move(columns), {});
}

/// A grid with header rows only. Its columns are in an order of their own: the remark, the net pay, the amounts from
/// the last to the first, a column of the host's without a key, the name.
inline std::shared_ptr<MemoryGrid> PayGrid(int fixedRows = 1) {
    auto grid = std::make_shared<MemoryGrid>(fixedRows);
    grid->AddColumn({"备注", "", false, 0});
    grid->AddColumn({"实发", "", false, 0});
    for (std::size_t i = std::size(kPayAmounts); i-- > 0;) grid->AddColumn({kPayAmounts[i], "", false, 0});
    grid->AddColumn({"", "", false, 0});
    grid->AddColumn({"姓名", "", false, 0});
    return grid;
}

/// Adds a row: the amounts count on from base + 1 in the table's order, the net pay is the last of them.
inline void AddDriver(MemoryGrid& grid, const std::string& name, int base, const std::string& remark = "") {
    grid.AddRow({});
    const std::int32_t row = grid.Rows() - 1;
    const auto set = [&](const char* key, const std::string& text) {
        grid.SetTextMatrix(row, grid.ColIndex(key), text);
    };
    set("姓名", name);
    for (const char* each : kPayAmounts) set(each, std::to_string(++base));
    set("实发", std::to_string(base + 1));
    set("备注", remark);
}

}  // namespace kpTables::test
