// A month's stock figures of products, as balance rows and bills have them.
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

/// What came in or went out.
struct Movement {
    Currency quantity;
    Currency price;
    Currency amount;
};

/// Quantities and prices at the month's ends are Doubles, as in the balance table; movements are all in Currency.
struct StockFigures {
    double openingQuantity = 0;
    double openingPrice = 0;
    Currency openingAmount;
    Movement inbound;
    Movement outbound;

    double Quantity() const;
    Currency Amount() const { return openingAmount + inbound.amount - outbound.amount; }
    /// 0 when nothing is there.
    double Price() const;
};

/// One product's figures, asked of the component's methods figure by figure.
StockFigures FiguresOf(Workspace& workspace, const StockOptions& options, std::int32_t product);

/// The same figures of every product that has a balance row or a bill line in the month, from one statement a table.
std::map<std::int32_t, StockFigures> FiguresByProduct(Workspace& workspace, const StockOptions& options);

}  // namespace kpTables::kpbook::commands
