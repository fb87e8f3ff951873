// Whether changes of bills leave enough in the warehouses.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "bookkeeping/BillResolver.h"

namespace kpTables::bookkeeping {

/// What bills that were added, changed or removed move, by warehouse and product.
class StockMoves {
public:
    /// Adds what a bill moves (sign 1), or no longer moves (-1).
    void Add(const StoredBill& bill, int sign, const std::string& key = {},
             const std::vector<NewBillLine>& source = {});
    /// Adds a fault for each warehouse and product of which these moves have left less than nothing on a day. Call it
    /// after the bills are written.
    void Check(Connection& book, BillResolver& names, std::vector<BillFault>& faults) const;

private:
    struct Move {
        Date day;
        double quantity = 0;  ///< into the warehouse
    };
    struct Moves {
        std::vector<Move> moves;
        std::string key;       ///< of the first bill that takes out
        std::int64_t row = 0;  ///< and its line
    };
    std::map<std::pair<std::int32_t, std::int32_t>, Moves> moves_;
};

}  // namespace kpTables::bookkeeping
