// The firm's lorries: work orders for deliveries and the drivers' monthly pay.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "Calendar.h"
#include "Firm.h"
#include "Random.h"
#include "Trade.h"

namespace kpTables::sample {

struct Delivery {
    int product;
    int supplier;
    int customer;
    std::string note;
    std::string place;
    Quantity quantity;
    Money freight;
};

struct WorkOrder {
    int id;
    Day date;
    std::string number;
    std::string clerk;
    std::string plate;
    std::string driver;
    std::string escort;
    Money collected;
    bool hired;
    bool violation;
    std::string remark;
    std::string auditor;
    Day auditDate;
    std::vector<Delivery> deliveries;
};

struct Pay {
    int month;
    std::string driver;
    Money income;
    std::array<Money, 10>
        costs;  ///< fuel, extra fuel, tolls, loading, depreciation, insurance, profit, taxes, road fee, loaders
    std::array<Money, 3> otherCosts;
    Money totalCost;
    std::array<Money, 3> allowances;
    Money payable;
    Money incomeTax;
    Money telephone;
    std::array<Money, 3> deductions;
    Money net;
    std::string remark;
};

/// Deliveries for a part of the year's sales.
std::vector<WorkOrder> DispatchYear(const Firm& firm, const Calendar& calendar, const Year& year, Random& random);

/// One row per driver and month with work orders.
std::vector<Pay> PayYear(const Firm& firm, const std::vector<WorkOrder>& orders);

}  // namespace kpTables::sample
