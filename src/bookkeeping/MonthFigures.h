// A warehouse's month in figures: what its balance rows say, and what its bills say.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "kpTables/Connection.h"
#include "kpTables/Currency.h"

namespace kpTables::bookkeeping {

struct Stock {
    double price = 0;
    double quantity = 0;
    Currency amount;
};

struct Total {
    double quantity = 0;
    Currency amount;
};

/// A balance row; a Null counts as 0.
struct BalanceRow {
    std::int32_t product = 0;
    std::int32_t year = 0;
    Stock opening;
    Stock in;
    Total inTotal;
    Stock out;
    Total outTotal;
    Stock closing;
    bool doubled = false;  ///< the product has more than one row; the figures are one row's
};

/// What the lines of one product add up to.
struct BillFigures {
    Stock sums;  ///< the price is the average of the lines' prices
    std::int32_t lines = 0;
};
using FiguresByProduct = std::map<std::int32_t, BillFigures>;
using TotalsByProduct = std::map<std::int32_t, Total>;

/// A month's balance rows by product, one for each.
std::vector<BalanceRow> ReadBalance(Connection& book, std::int32_t warehouse, std::int32_t month);

/// The bills of a warehouse, month after month.
struct BillMonth {
    FiguresByProduct in;
    FiguresByProduct out;
    FiguresByProduct cost;
    // From the first month on.
    TotalsByProduct inTotal;
    TotalsByProduct outTotal;
    TotalsByProduct costTotal;

    /// Replaces the month's figures, and adds them to the totals.
    void Read(Connection& book, std::int32_t warehouse, std::int32_t month);
};

}  // namespace kpTables::bookkeeping
