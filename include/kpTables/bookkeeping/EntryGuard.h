// Keeps bills out of closed months.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kpTables/bookkeeping/ClosedMonths.h"

namespace kpTables::bookkeeping {

/// Judges rows for one table before they are entered: headers of bills (入库目录, 出库目录, 成本目录) and their lines.
/// Rows of other tables may always be entered. Make it inside the transaction that the rows are entered in, so that no
/// month is closed in between.
class EntryGuard {
public:
    /// columns: what Refusal's values are for; names without regard to the case of A to Z.
    EntryGuard(Connection& book, std::string_view table, const std::vector<std::string>& columns);

    /// Why a row must not be entered: its month is closed in its warehouse. "" when it may. values: one a column.
    std::string Refusal(const std::vector<Variant>& values) const;

private:
    std::string RefusalOf(std::int32_t warehouse, std::int32_t month) const;

    struct Place {
        std::int32_t warehouse;
        std::int32_t month;
    };
    std::map<std::int32_t, std::int16_t> closed_;    ///< by warehouse; empty: every row may be entered
    std::unordered_map<std::int32_t, Place> bills_;  ///< of closed months, by id; for lines
    std::map<std::int32_t, std::string> names_;      ///< of warehouses
    int warehouse_ = -1;                             ///< columns of a header; -1: not given
    int month_ = -1;
    int bill_ = -1;  ///< column of a line
};

}  // namespace kpTables::bookkeeping
