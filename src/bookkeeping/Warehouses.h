// The warehouses that an operation is for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/CTables.h"
#include "kpTables/Connection.h"

namespace kpTables::bookkeeping {

struct Warehouse {
    std::int32_t id = 0;
    std::string name;
};

/// One warehouse or all, by id; error 5 when there is none.
std::vector<Warehouse> ReadWarehouses(Connection& book, std::optional<std::int32_t> only);

/// The last day of a month.
Date LastDay(std::int32_t year, std::int32_t month);
/// Records through which month a warehouse is closed.
void MarkClosedThrough(CTables& tables, std::int32_t warehouse, std::int32_t year, std::int32_t month, bool closed);

}  // namespace kpTables::bookkeeping
