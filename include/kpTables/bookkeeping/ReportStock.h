// The stock figures of products in a month, and the value of the stock month by month.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "kpTables/CTables.h"
#include "kpTables/Currency.h"
#include "kpTables/bookkeeping/ReportValuation.h"
#include "kpTables/bookkeeping/WatchedConnection.h"

namespace kpTables::bookkeeping {

/// What was received or issued.
struct Movement {
    Currency quantity;
    Currency price;
    Currency amount;
};

/// Quantities and prices of the balance are Doubles, as in the balance table; movements are Currency throughout.
struct StockFigures {
    double openingQuantity = 0;
    double openingPrice = 0;
    Currency openingAmount;
    Movement inbound;
    Movement outbound;

    double Quantity() const;
    Currency Amount() const { return openingAmount + inbound.amount - outbound.amount; }
    /// 0 when the quantity is 0.
    double Price() const;
};

/// What stock figures are asked for.
struct StockScope {
    std::int16_t month = 0;                      ///< 1 to 12
    std::optional<std::int32_t> warehouse = {};  ///< dpID; empty: all of them together
    Valuation valuation = Valuation::OutboundBills;
};

/// One product's (pdID) figures, each from a method of the component but for what the goods that went out have cost.
/// connection is the one that tables works on: it tells what the methods trap, and that is thrown.
StockFigures StockOf(CTables& tables, WatchedConnection& connection, const StockScope& scope, std::int32_t product);

/// The same figures of every product that has a balance row or a bill line in the month, from one statement per table.
std::map<std::int32_t, StockFigures> StockByProduct(Connection& book, const StockScope& scope);

/// What a warehouse's stock is worth at a month's end.
struct StockValue {
    std::int32_t warehouse = 0;  ///< dpID
    std::int16_t month = 0;
    Currency amount;
};

/// Opening stock, inbound and outbound of each warehouse's months that have balance rows, by warehouse and month.
std::vector<StockValue> StockValues(Connection& book, Valuation valuation);

}  // namespace kpTables::bookkeeping
