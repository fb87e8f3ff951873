// The balance rows of one warehouse around a closing.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bookkeeping/BillKinds.h"
#include "kpTables/Connection.h"

namespace kpTables::bookkeeping {

class BalanceRows {
public:
    BalanceRows(Connection& book, std::int32_t warehouse) : book_(book), warehouse_(warehouse) {}

    std::int32_t Count(std::int32_t month) const;
    /// The latest year of a month's rows; 0 when there is none.
    std::int32_t Year(std::int32_t month) const;
    /// The first month after one and before another that has rows or bills; 0 when there is none.
    std::int16_t FirstUsedMonth(std::int32_t after, std::int32_t before) const;

    /// Products on the month's bills of a kind that have no row in the month.
    std::vector<std::int32_t> Missing(const BillKind& kind, std::int32_t month) const;
    /// The latest year of the month's bills; 0 when there is none.
    std::int32_t BillsYear(std::int32_t month) const;
    /// Adds a row without figures for each product.
    void Add(const std::vector<std::int32_t>& products, std::int32_t year, std::int32_t month) const;

    /// Rows of the next month that the month's closing would carry in once more, with an opening stock in them.
    std::int32_t CarriedBefore(std::int32_t month) const;
    /// Removes the next month's rows of the month's products. Rows whose product has none in the month stay.
    void RemoveCarried(std::int32_t month) const;
    /// Puts the month's rows back to how they were carried in: no movements, closing stock = opening stock.
    void Reset(std::int32_t month) const;

private:
    bool HasNext(std::int32_t month) const;
    std::string NextRowsOf(std::int32_t month) const;

    Connection& book_;
    std::int32_t warehouse_;
};

}  // namespace kpTables::bookkeeping
