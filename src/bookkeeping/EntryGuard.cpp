#include "kpTables/bookkeeping/EntryGuard.h"

#include <algorithm>

#include "bookkeeping/BillKinds.h"
#include "bookkeeping/Names.h"
#include "bookkeeping/Warehouses.h"
#include "kpTables/Convert.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

int PositionOf(const std::vector<std::string>& columns, std::string_view name) {
    const auto found =
        std::ranges::find_if(columns, [&](const std::string& column) { return IsSameName(column, name); });
    return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

/// The whole number in a column; 0 when it is not given.
std::int32_t WholeAt(const std::vector<Variant>& values, int column) {
    if (column < 0) return 0;
    const Variant& value = values[static_cast<std::size_t>(column)];
    return value.IsNull() || value.IsMissing() ? 0 : CLng(value);
}

RecordsetPtr ClosedBills(Connection& book, const BillKind& kind, std::int32_t warehouse, std::int32_t through) {
    return book.Execute("Select " + std::string(kind.key) + ",月份 From " + kind.Headers() +
                        " Where dpID=" + std::to_string(warehouse) + " And 月份<=" + std::to_string(through));
}

}  // namespace

EntryGuard::EntryGuard(Connection& book, std::string_view table, const std::vector<std::string>& columns) {
    for (const BillKind& kind : kBillKinds) {
        const bool isLine = table == kind.Lines();
        if (!isLine && table != kind.Headers()) continue;
        closed_ = ClosedMonths(book).All();
        if (closed_.empty()) return;
        for (const auto& warehouse : ReadWarehouses(book, std::nullopt)) names_[warehouse.id] = warehouse.name;
        if (!isLine) {
            warehouse_ = PositionOf(columns, "dpID");
            month_ = PositionOf(columns, "月份");
            return;
        }
        bill_ = PositionOf(columns, kind.key);
        for (const auto& [warehouse, through] : closed_) {
            const auto bills = ClosedBills(book, kind, warehouse, through);
            for (; !bills->Eof(); bills->MoveNext())
                bills_[CLng(bills->GetValue(0))] = {warehouse, CLng(bills->GetValue(1))};
        }
        return;
    }
}

std::string EntryGuard::Refusal(const std::vector<Variant>& values) const {
    if (bill_ >= 0) {
        const auto bill = bills_.find(WholeAt(values, bill_));
        return bill == bills_.end() ? "" : RefusalOf(bill->second.warehouse, bill->second.month);
    }
    if (warehouse_ < 0 || month_ < 0) return "";
    const std::int32_t warehouse = WholeAt(values, warehouse_);
    const std::int32_t month = WholeAt(values, month_);
    const auto closed = closed_.find(warehouse);
    if (closed == closed_.end() || month < 1 || month > closed->second) return "";
    return RefusalOf(warehouse, month);
}

std::string EntryGuard::RefusalOf(std::int32_t warehouse, std::int32_t month) const {
    const auto name = names_.find(warehouse);
    return Message("month {1} of {2} is closed", month,
                   name == names_.end() ? Message("warehouse {1}", warehouse) : name->second);
}

}  // namespace kpTables::bookkeeping
