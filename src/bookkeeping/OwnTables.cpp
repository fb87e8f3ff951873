#include "bookkeeping/OwnTables.h"

#include <algorithm>

#include "bookkeeping/Names.h"
#include "kpTables/Convert.h"
#include "kpTables/Quoted.h"

namespace kpTables::bookkeeping {

namespace {

std::string JetType(const TableInfo::Column& column) {
    switch (column.type) {
        case VarType::Boolean:
            return "YESNO";
        case VarType::Integer:
            return "SHORT";
        case VarType::Long:
            return column.counter ? "COUNTER" : "LONG";
        case VarType::Double:
            return "DOUBLE";
        case VarType::Currency:
            return column.precision == 0
                       ? "CURRENCY"
                       : "DECIMAL(" + std::to_string(column.precision) + "," + std::to_string(column.scale) + ")";
        case VarType::Date:
            return "DATETIME";
        default:
            return column.length == 0 ? "MEMO" : "TEXT(" + std::to_string(column.length) + ")";
    }
}

std::string DefaultClause(const TableInfo::Column& column) {
    const Variant& value = column.defaultValue;
    if (value.IsNull() || column.type == VarType::Date) return {};
    if (const auto* text = value.If<std::string>()) return " DEFAULT '" + Quoted(*text) + "'";
    if (const auto* flag = value.If<bool>()) return *flag ? " DEFAULT True" : " DEFAULT False";
    return " DEFAULT " + Text(value);
}

}  // namespace

const TableInfo* FindTable(const std::vector<TableInfo>& tables, std::string_view name) {
    const auto found = std::ranges::find_if(tables, [&](const TableInfo& each) { return IsSameName(each.name, name); });
    return found == tables.end() ? nullptr : &*found;
}

const TableInfo::Column* FindColumn(const TableInfo& table, std::string_view name) {
    const auto found =
        std::ranges::find_if(table.columns, [&](const TableInfo::Column& each) { return IsSameName(each.name, name); });
    return found == table.columns.end() ? nullptr : &*found;
}

std::vector<std::string> TakeOwnColumns(const TableInfo& from, const TableInfo& to, Book& book) {
    std::vector<std::string> added;
    for (const auto& column : from.columns) {
        if (FindColumn(to, column.name)) continue;
        book.Execute("Alter Table " + Bracketed(to.name) + " Add Column " + Bracketed(column.name) + " " +
                     JetType(column) + DefaultClause(column));
        added.push_back(to.name + "." + column.name);
    }
    return added;
}

void TakeColumnTypes(const TableInfo& from, const TableInfo& to, Book& book) {
    for (const auto& column : from.columns) {
        const auto* made = FindColumn(to, column.name);
        if (!made || made->counter || JetType(column) == JetType(*made)) continue;
        book.Execute("Alter Table " + Bracketed(to.name) + " Alter Column " + Bracketed(column.name) + " " +
                     JetType(column));
    }
}

std::vector<std::string> MakeTable(const TableInfo& table, Book& book) {
    std::vector<std::string> left;
    std::string columns;
    std::string keys;
    for (const auto& column : table.columns) {
        columns +=
            (columns.empty() ? "" : ", ") + Bracketed(column.name) + " " + JetType(column) + DefaultClause(column);
        if (column.required && !column.key) columns += " NOT NULL";
        if (column.key) keys += (keys.empty() ? "" : ", ") + Bracketed(column.name);
        if (column.type == VarType::Date && !column.defaultValue.IsNull())
            left.push_back(table.name + "." + column.name);
    }
    if (!keys.empty()) columns += ", PRIMARY KEY (" + keys + ")";
    book.Execute("Create Table " + Bracketed(table.name) + " (" + columns + ")");
    return left;
}

}  // namespace kpTables::bookkeeping
