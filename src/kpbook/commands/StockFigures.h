// The stock figures of products in a month, from balance rows and bills.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "kpTables/Currency.h"

namespace kpTables::kpbook {
struct Workspace;
}

namespace kpTables::kpbook::commands {

struct StockOptions;

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

/// One product's figures, each from a method of the component.
StockFigures FiguresOf(Workspace& workspace, const StockOptions& options, std::int32_t product);

/// The same figures of every product that has a balance row or a bill line in the month, from one statement per table.
std::map<std::int32_t, StockFigures> FiguresByProduct(Workspace& workspace, const StockOptions& options);

}  // namespace kpTables::kpbook::commands
