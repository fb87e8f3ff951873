// Which months of a warehouse are closed. docs/book.md states the rule.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "kpTables/Connection.h"

namespace kpTables::bookkeeping {

inline constexpr std::int16_t kLastMonth = 12;

/// The last month through which a warehouse (dpID) is closed; 0 when none is.
std::int16_t ClosedThrough(Connection& book, std::int32_t warehouse);

/// The closed months of all warehouses, read once.
class ClosedMonths {
public:
    explicit ClosedMonths(Connection& book);

    /// As ClosedThrough.
    std::int16_t Through(std::int32_t warehouse) const;
    /// Whether bills of the month (1 to 12) may no longer be entered.
    bool IsClosed(std::int32_t warehouse, std::int32_t month) const { return month <= Through(warehouse); }
    /// The warehouses that have a closed month, with the last one.
    const std::map<std::int32_t, std::int16_t>& All() const noexcept { return through_; }

private:
    std::map<std::int32_t, std::int16_t> through_;
};

}  // namespace kpTables::bookkeeping
