// What an operation changes in a warehouse's balance rows and its closed flag.
#pragma once

#include <cstdint>
#include <vector>

#include "kpTables/Connection.h"
#include "kpTables/bookkeeping/Closing.h"

namespace kpTables::bookkeeping {

/// The rows of a warehouse as they are, from a month to another.
class BalanceSnapshot {
public:
    BalanceSnapshot(Connection& book, std::int32_t warehouse, std::int32_t firstMonth, std::int32_t lastMonth);

    /// What differs in a later snapshot, by year, month, product and column.
    std::vector<Change> ChangesTo(const BalanceSnapshot& later) const;

private:
    RecordsetPtr rows_;
    RecordsetPtr flag_;
};

}  // namespace kpTables::bookkeeping
