// What is in a warehouse on a day, and what it cost.
#pragma once

#include <cstdint>
#include <optional>

#include "kpTables/Connection.h"
#include "kpTables/Date.h"

namespace kpTables::bookkeeping {

/// The lowest quantity of a product in a warehouse at the end of any day from a date on, and that day: from the opening
/// stock of the product's first balance row and the bills from that month on.
struct StockLow {
    double quantity = 0;
    Date day = {};
};
StockLow LowestStock(Connection& book, std::int32_t warehouse, std::int32_t product, Date from);

/// The price without tax of what lies in a warehouse on a date, rounded half to even: opening stock of the latest
/// balance row up to its month and what came in since, weighted by quantity. Nothing when that is no quantity or has
/// no value.
std::optional<Currency> CurrentCost(Connection& book, std::int32_t warehouse, std::int32_t product, Date date);

}  // namespace kpTables::bookkeeping
