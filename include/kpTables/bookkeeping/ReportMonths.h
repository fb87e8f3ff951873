// How far the warehouses are with a month.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Connection.h"

namespace kpTables::bookkeeping {

enum class MonthState {
    Closed,
    Open,        ///< the first month that is not closed: its figures are those of the bills so far
    NotReached,  ///< a month before it is open still, so that its opening stock is not known
    Unused,      ///< the warehouse has neither balance rows nor bills up to the month
};

struct WarehouseMonth {
    std::int32_t warehouse = 0;  ///< dpID
    std::string name;
    MonthState state = MonthState::Unused;
};

/// A month (1 to 12) of one warehouse or, without a dpID, of all, by dpID. Error 5 for an unknown warehouse.
std::vector<WarehouseMonth> MonthStates(Connection& book, std::int16_t month, std::optional<std::int32_t> warehouse);

/// The last month that has bills, else the last that has balance rows; 0 in a book without either.
std::int16_t LastUsedMonth(Connection& book);

}  // namespace kpTables::bookkeeping
