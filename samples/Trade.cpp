#include "Trade.h"

#include <algorithm>

namespace kpTables::sample {

namespace {

constexpr int kPurchases = 1080;
constexpr int kTransfers = 120;
constexpr int kSales = 1480;
constexpr int kMainDepot = 1;
/// The months after this one have no cost bills yet.
constexpr int kLastCostedMonth = 9;

/// Building is quiet around the Spring Festival and brisk in spring and autumn. Sums to 1200.
constexpr std::array<int, 12> kSeason = {85, 45, 105, 120, 95, 100, 90, 95, 120, 115, 125, 105};

/// How many of a year's events fall into a month; the months' shares add up to the total.
int Share(int events, int month) {
    int before = 0;
    for (int m = 1; m < month; ++m) {
        before += kSeason[static_cast<std::size_t>(m - 1)];
    }
    const int after = before + kSeason[static_cast<std::size_t>(month - 1)];
    return events * after / 1200 - events * before / 1200;
}

struct CustomerHabit {
    const char* classCode;
    int share;              ///< percent of all sales bills
    int smallest, largest;  ///< percent of a typical line
    int price;              ///< percent of the list price
};
constexpr std::array<CustomerHabit, 6> kHabits = {{{"01", 32, 50, 200, 98},
                                                   {"02", 20, 40, 130, 99},
                                                   {"03", 8, 80, 240, 97},
                                                   {"04", 28, 25, 110, 96},
                                                   {"05", 7, 15, 70, 100},
                                                   {"06", 5, 3, 12, 102}}};

const CustomerHabit& HabitOf(const Partner& customer) {
    return *std::find_if(kHabits.begin(), kHabits.end(),
                         [&](const CustomerHabit& habit) { return customer.classCode == habit.classCode; });
}

bool Has(const std::vector<std::string>& codes, const std::string& code) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

}  // namespace

Trade::Trade(const Firm& firm, const Calendar& calendar, Random& random)
    : firm_(firm),
      calendar_(calendar),
      random_(random),
      vouchers_(firm, calendar, random),
      shelves_(firm.products.size() * firm.depots.size()) {
    for (const Partner& supplier : firm.suppliers) {
        range_.emplace_back();
        for (const Product& product : firm.products) {
            if (product.supplier == supplier.id ||
                (supplier.wholeRange && Has(supplier.productClasses, product.classCode))) {
                range_.back().push_back(product.id);
            }
        }
    }
}

Year Trade::Run() {
    OpenShelves();
    for (int month = 1; month <= 12; ++month) {
        PlayMonth(month);
    }
    return std::move(year_);
}

void Trade::OpenShelves() {
    for (const Product& product : firm_.products) {
        for (const Depot& depot : firm_.depots) {
            if (depot.id != product.homeDepot && !(depot.id == kMainDepot && product.inMainDepot)) {
                continue;
            }
            Shelf& shelf = At(product.id, depot.id);
            shelf.used = true;
            shelf.target = product.typical * (depot.id == kMainDepot ? 6 : 5);
            if (product.firstMonth > 1) {
                continue;
            }
            shelf.stock = std::max(product.step, Floor(shelf.target * random_.Between(40, 95) / 100, product.step));
            const Money price = DivideHalfEven(product.purchasePrice * random_.Between(985, 1015), 1170);
            shelf.amount = Amount(price, shelf.stock);
            year_.opening.push_back({product.id, depot.id, price, shelf.stock, shelf.amount});
        }
    }
}

void Trade::PlayMonth(int month) {
    for (Shelf& shelf : shelves_) {
        shelf.available = shelf.stock;
        shelf.received = 0;
        shelf.issued = 0;
    }
    const std::vector<Day>& days = calendar_.WorkingDays(month);
    std::vector<std::pair<Day, Event>> events;
    const auto plan = [&](int count, Event event) {
        for (int i = 0; i < count; ++i) {
            events.emplace_back(random_.Pick(days), event);
        }
    };
    plan(Share(kPurchases, month), Event::Purchase);
    plan(Share(kTransfers, month), Event::Transfer);
    plan(Share(kSales, month), Event::Sale);
    std::stable_sort(events.begin(), events.end());

    Introduce(month);
    for (const auto& [day, event] : events) {
        switch (event) {
            case Event::Purchase:
                Purchase(day);
                break;
            case Event::Transfer:
                Transfer(day);
                break;
            case Event::Sale:
                Sale(day);
                break;
        }
    }
    Cost(month);
}

void Trade::Introduce(int month) {
    for (const Product& product : firm_.products) {
        if (month > 1 && product.firstMonth == month) {
            const Partner& maker = firm_.suppliers[static_cast<std::size_t>(product.supplier - 1)];
            Buy(calendar_.WorkingDays(month).front(), maker, product.homeDepot, {product.id});
        }
    }
}

std::pair<int, std::vector<int>> Trade::NeededFrom(const Partner& supplier, int month) {
    std::pair<int, std::vector<int>> most;
    for (const Depot& depot : firm_.depots) {
        std::vector<int> needed;
        for (const int product : range_[static_cast<std::size_t>(supplier.id - 1)]) {
            const Shelf& shelf = At(product, depot.id);
            if (shelf.used && ProductOf(product).firstMonth <= month && shelf.stock * 10 < shelf.target * 7) {
                needed.push_back(product);
            }
        }
        if (needed.size() > most.second.size()) {
            most = {depot.id, std::move(needed)};
        }
    }
    return most;
}

void Trade::Purchase(Day day) {
    for (int attempt = 0; attempt < 60; ++attempt) {
        const Partner& supplier = random_.Pick(firm_.suppliers);
        auto [depot, products] = NeededFrom(supplier, day.month);
        if (products.size() < (attempt < 20 ? 3U : attempt < 40 ? 2U : 1U)) {
            continue;
        }
        std::stable_sort(products.begin(), products.end(), [&, depot = depot](int left, int right) {
            const Shelf& l = At(left, depot);
            const Shelf& r = At(right, depot);
            return l.stock * r.target < r.stock * l.target;
        });
        products.resize(std::min<std::size_t>(products.size(), static_cast<std::size_t>(random_.Between(3, 8))));
        Buy(day, supplier, depot, products);
        return;
    }
}

void Trade::Buy(Day day, const Partner& supplier, int depot, const std::vector<int>& products) {
    Bill bill = vouchers_.Purchase(day, supplier, depot);
    for (const int id : products) {
        const Product& product = ProductOf(id);
        const Shelf& shelf = At(id, depot);
        const Quantity wanted = (shelf.target - shelf.stock) * random_.Between(80, 110) / 100;
        const Quantity quantity = std::max(product.step, Floor(wanted, product.step));
        const Money price =
            RoundPrice(MarketPrice(product, product.purchasePrice, day.month) * random_.Between(97, 103) / 100);
        bill.lines.push_back(vouchers_.TaxedLine(bill, true, product, price, quantity, supplier.taxRate));
        Receive(bill.lines.back(), depot);
    }
    year_.inbound.push_back(std::move(bill));
}

void Trade::Transfer(Day day) {
    for (int attempt = 0; attempt < 30; ++attempt) {
        const int other = static_cast<int>(random_.Between(2, static_cast<std::int64_t>(firm_.depots.size())));
        const bool outOfMain = random_.Percent(50);
        const int from = outOfMain ? kMainDepot : other;
        const int to = outOfMain ? other : kMainDepot;
        std::vector<int> products;
        for (const Product& product : firm_.products) {
            const Shelf& source = At(product.id, from);
            const Shelf& target = At(product.id, to);
            if (source.used && target.used && source.stock * 2 > source.target && target.stock * 2 < target.target &&
                source.stock / 3 >= product.step && products.size() < 6) {
                products.push_back(product.id);
            }
        }
        if (products.empty()) {
            continue;
        }
        Bill bill = vouchers_.Transfer(day, from, to);
        for (const int id : products) {
            const Product& product = ProductOf(id);
            const Quantity quantity = Floor(At(id, from).stock / 3, product.step);
            // At the purchase price without tax, since a transfer is not a sale.
            const Money price = DivideHalfEven(product.purchasePrice * 100, 117);
            bill.lines.push_back(vouchers_.TaxedLine(bill, false, product, price, quantity, 0));
            Issue(bill.lines.back(), from);
            Receive(bill.lines.back(), to);
        }
        year_.inbound.push_back(vouchers_.Counterpart(bill, to));
        year_.outbound.push_back(std::move(bill));
        return;
    }
}

const Partner& Trade::ChooseCustomer() {
    std::int64_t draw = random_.Below(100);
    const auto habit = std::find_if(kHabits.begin(), kHabits.end(),
                                    [&](const CustomerHabit& each) { return (draw -= each.share) < 0; });
    std::vector<const Partner*> customers;
    for (const Partner& customer : firm_.customers) {
        if (customer.classCode == habit->classCode) {
            customers.push_back(&customer);
        }
    }
    return *random_.Pick(customers);
}

int Trade::DepotFor(const Partner& customer) {
    if (random_.Percent(45)) {
        return kMainDepot;
    }
    const std::string& code = random_.Pick(customer.productClasses);
    return std::find_if(firm_.depots.begin(), firm_.depots.end(),
                        [&](const Depot& depot) { return Has(depot.productClasses, code); })
        ->id;
}

void Trade::Sale(Day day) {
    for (int attempt = 0; attempt < 50; ++attempt) {
        const Partner& customer = ChooseCustomer();
        const int depot = DepotFor(customer);
        std::vector<int> products;
        for (const Product& product : firm_.products) {
            if (At(product.id, depot).stock >= product.step && Has(customer.productClasses, product.classCode)) {
                products.push_back(product.id);
            }
        }
        const std::int64_t wanted = customer.classCode == "06" ? random_.Between(1, 4) : random_.Between(2, 8);
        if (static_cast<std::int64_t>(products.size()) < wanted) {
            continue;
        }
        for (std::size_t i = 0; i < static_cast<std::size_t>(wanted); ++i) {
            const std::int64_t left = static_cast<std::int64_t>(products.size() - i);
            std::swap(products[i], products[i + static_cast<std::size_t>(random_.Below(left))]);
        }
        products.resize(static_cast<std::size_t>(wanted));
        std::sort(products.begin(), products.end());
        Sell(day, customer, depot, products);
        return;
    }
}

void Trade::Sell(Day day, const Partner& customer, int depot, const std::vector<int>& products) {
    const CustomerHabit& habit = HabitOf(customer);
    Bill bill = vouchers_.Sale(day, customer, depot);
    for (const int id : products) {
        const Product& product = ProductOf(id);
        const Quantity wanted = product.typical * random_.Between(habit.smallest, habit.largest) / 100;
        const Quantity quantity = std::min(At(id, depot).stock, std::max(product.step, Floor(wanted, product.step)));
        const Money price =
            RoundPrice(MarketPrice(product, product.salePrice, day.month) * (habit.price + random_.Below(3)) / 100);
        bill.lines.push_back(vouchers_.TaxedLine(bill, false, product, price, quantity, customer.taxRate));
        Issue(bill.lines.back(), depot);
    }
    year_.outbound.push_back(std::move(bill));
}

void Trade::Cost(int month) {
    for (const Depot& depot : firm_.depots) {
        CostBill bill{static_cast<int>(year_.costs.size()) + 1, calendar_.WorkingDays(month).back(), depot.id, {}};
        for (const Product& product : firm_.products) {
            Shelf& shelf = At(product.id, depot.id);
            const Money value = shelf.amount + shelf.received;
            const Money price = UnitPrice(value, shelf.available);
            // A product that is sold out takes the rest of the value, so that no amount remains without a quantity.
            const Money cost = shelf.issued == shelf.available ? value : std::min(value, Amount(price, shelf.issued));
            shelf.amount = value - cost;
            if (shelf.issued > 0) {
                bill.lines.push_back({product.id, price, shelf.issued, cost});
            }
        }
        if (month <= kLastCostedMonth && !bill.lines.empty()) {
            year_.costs.push_back(std::move(bill));
        }
    }
}

Money Trade::MarketPrice(const Product& product, Money price, int month) const {
    // Steel and copper rose through the year.
    const int perMonth = product.classCode == "02" ? 11 : product.classCode == "08" ? 5 : 0;
    return price * (1000 + perMonth * (month - 1)) / 1000;
}

void Trade::Receive(const Line& line, int depot) {
    Shelf& shelf = At(line.product, depot);
    shelf.stock += line.quantity;
    shelf.available += line.quantity;
    shelf.received += line.netAmount;
}

void Trade::Issue(const Line& line, int depot) {
    Shelf& shelf = At(line.product, depot);
    shelf.stock -= line.quantity;
    shelf.issued += line.quantity;
}

}  // namespace kpTables::sample
