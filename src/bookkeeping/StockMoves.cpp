#include "bookkeeping/StockMoves.h"

#include <algorithm>
#include <cmath>

#include "kpTables/Convert.h"
#include "kpTables/bookkeeping/StockOnHand.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

namespace {

/// Sums of doubles are a little off.
constexpr double kLeastShortage = 1e-6;

std::string QuantityText(double quantity) {
    constexpr double kScale = 1e6;
    return Text(std::round(quantity * kScale) / kScale);
}

}  // namespace

void StockMoves::Add(const StoredBill& bill, int sign, const std::string& key, const std::vector<NewBillLine>& source) {
    if (bill.family == BillFamily::Cost || !bill.date) return;
    const int direction = bill.family == BillFamily::Inbound ? sign : -sign;
    for (std::size_t i = 0; i < bill.lines.size(); ++i) {
        const double quantity = direction * bill.lines[i].quantity;
        Moves& moves = moves_[{bill.warehouse, bill.lines[i].product}];
        moves.moves.push_back({*bill.date, quantity});
        if (quantity < 0 && moves.row == 0 && moves.key.empty()) {
            moves.key = key;
            moves.row = i < source.size() ? source[i].row : 0;
        }
    }
}

void StockMoves::Check(Connection& book, BillResolver& names, std::vector<BillFault>& faults) const {
    for (const auto& [place, moves] : moves_) {
        std::optional<Date> first;
        for (const Move& move : moves.moves) {
            if (move.quantity < 0 && (!first || move.day < *first)) first = move.day;
        }
        if (!first) continue;
        const auto [warehouse, product] = place;
        const StockLow low = LowestStock(book, warehouse, product, *first);
        if (low.quantity > -kLeastShortage) continue;
        double taken = 0;
        for (const Move& move : moves.moves) {
            if (move.day <= low.day) taken -= move.quantity;
        }
        // What these bills have put back may be more than what they take out; then they are not the cause.
        if (taken < kLeastShortage) continue;
        faults.push_back({moves.key, moves.row, "",
                          Message("{1} in {2}: stock {3} on {4}, wanted {5}", names.ProductName(product),
                                  names.WarehouseName(warehouse), QuantityText(low.quantity + taken), low.day.ToText(),
                                  QuantityText(taken)),
                          true});
    }
}

}  // namespace kpTables::bookkeeping
