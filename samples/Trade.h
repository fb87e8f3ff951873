// A year of purchases, transfers and sales, simulated day by day against the stock.
#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "Calendar.h"
#include "Figures.h"
#include "Firm.h"
#include "Random.h"
#include "Vouchers.h"

namespace kpTables::sample {

struct Opening {
    int product;
    int depot;
    Money price;
    Quantity quantity;
    Money amount;
};

struct CostLine {
    int product;
    Money price;
    Quantity quantity;
    Money amount;
};

struct CostBill {
    int id;
    Day date;
    int depot;
    std::vector<CostLine> lines;
};

struct Year {
    std::vector<Opening> opening;
    std::vector<Bill> inbound, outbound;
    std::vector<CostBill> costs;
};

class Trade {
public:
    Trade(const Firm& firm, const Calendar& calendar, Random& random);
    Year Run();

private:
    /// The stock of a product in a warehouse, and its movements in the month.
    struct Shelf {
        bool used = false;
        Quantity stock = 0;
        Quantity target = 0;
        Money amount = 0;        ///< of the month's opening stock
        Money received = 0;      ///< net amount of the month's inbound lines
        Quantity issued = 0;     ///< of the month's outbound lines
        Quantity available = 0;  ///< opening and inbound quantity
    };
    enum class Event { Purchase, Transfer, Sale };

    Shelf& At(int product, int depot) {
        return shelves_[static_cast<std::size_t>(product - 1) * firm_.depots.size() +
                        static_cast<std::size_t>(depot - 1)];
    }
    const Product& ProductOf(int id) const { return firm_.products[static_cast<std::size_t>(id - 1)]; }

    void OpenShelves();
    void PlayMonth(int month);
    void Introduce(int month);
    void Purchase(Day day);
    std::pair<int, std::vector<int>> NeededFrom(const Partner& supplier, int month);
    void Buy(Day day, const Partner& supplier, int depot, const std::vector<int>& products);
    void Transfer(Day day);
    void Sale(Day day);
    int DepotFor(const Partner& customer);
    const Partner& ChooseCustomer();
    void Sell(Day day, const Partner& customer, int depot, const std::vector<int>& products);
    void Cost(int month);

    Money MarketPrice(const Product& product, Money price, int month) const;
    void Receive(const Line& line, int depot);
    void Issue(const Line& line, int depot);

    const Firm& firm_;
    const Calendar& calendar_;
    Random& random_;
    Vouchers vouchers_;
    std::vector<Shelf> shelves_;
    std::vector<std::vector<int>> range_;  ///< products that each supplier sells
    Year year_;
};

}  // namespace kpTables::sample
