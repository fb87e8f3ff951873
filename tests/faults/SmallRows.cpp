#include "faults/SmallRows.h"

namespace kpTables::faults {

namespace {

/// The value of a column in row k, as Jet writes it.
std::string ValueOf(const std::string& table, const TableInfo::Column& column, int k) {
    const std::string number = std::to_string(k);
    if (column.name == "年份") return "2004";
    if (column.name == "月份") return "3";
    if (column.name == "dpID" && table != "仓库设置") return "2";
    switch (column.type) {
        case VarType::String:
            return "'" + column.name.substr(0, 12) + number + "'";
        case VarType::Date:
            return "#2004-3-" + number + "#";
        case VarType::Boolean:
            return "0";
        case VarType::Double:
        case VarType::Currency:
            return number + ".5";
        default:
            return number;
    }
}

std::string InsertOf(const TableInfo& table, int k) {
    std::string names, values;
    for (const auto& column : table.columns) {
        // Computed by the book.
        if (column.name == "项目ID" && table.name != "项目设置") continue;
        const char* separator = names.empty() ? "" : ",";
        names += separator + ("[" + column.name + "]");
        values += separator + ValueOf(table.name, column, k);
    }
    return "Insert Into [" + table.name + "] (" + names + ") Values (" + values + ")";
}

}  // namespace

std::vector<std::string> SmallRows(Book& book) {
    std::vector<std::string> statements;
    for (const TableInfo& table : book.Tables()) {
        // A method fills it when it is empty.
        if (table.name == "收付款方式") continue;
        for (const int k : kSmallRows) statements.push_back(InsertOf(table, k));
    }
    // A product on a bill that has no balance row.
    statements.emplace_back("Insert Into 商品设置 (pdID,商品名称) Values (9,'无余额')");
    statements.emplace_back("Insert Into 入库记录 (BillID,pdID,dpID,数量,除税单价,除税金额) Values (2,9,2,1,1,1)");
    return statements;
}

}  // namespace kpTables::faults
