#include "bookkeeping/Warehouses.h"

#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

std::vector<Warehouse> ReadWarehouses(Connection& book, std::optional<std::int32_t> only) {
    std::vector<Warehouse> warehouses;
    const auto rows = book.Execute("Select dpID, 仓库名称 From 仓库设置 Order by dpID");
    for (; !rows->Eof(); rows->MoveNext()) {
        const auto id = CLng(rows->GetValue(0));
        if (!only || *only == id) warehouses.push_back({id, Text(rows->GetValue(1))});
    }
    if (warehouses.empty()) {
        throw Error(static_cast<std::int32_t>(ErrorNumber::InvalidCall),
                    only ? Message("the book has no warehouse {1}", *only) : Message("the book has no warehouses"));
    }
    return warehouses;
}

Date LastDay(std::int32_t year, std::int32_t month) { return Date::FromYearMonthDay(year, month + 1, 0); }

void MarkClosedThrough(CTables& tables, std::int32_t warehouse, std::int32_t year, std::int32_t month, bool closed) {
    tables.UpdateDepotClosedFlag(warehouse, LastDay(year, month), closed);
}

}  // namespace kpTables::bookkeeping
