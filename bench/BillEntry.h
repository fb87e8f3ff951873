// Enters inbound bills into a book, as a host does and by hand.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "BookMaker.h"
#include "kpTables/Currency.h"

namespace kpTables::bench {

struct NewLine {
    std::int32_t product;
    double quantity;
    Currency price;
    Currency amount;
    Currency tax;
    Currency netPrice;
    Currency netAmount;
};

struct NewBill {
    std::int16_t day;
    std::int32_t depot;
    std::int32_t partner;
    std::int32_t project;
    std::string number;
    std::vector<NewLine> lines;
};

/// Bills of ten lines in the month after the book's last, day by day, spread over its products. Every series has
/// different bills.
std::vector<NewBill> NewBills(const BookSize& size, int series, int count);

struct Entered {
    double microseconds;  ///< per bill
    double pages;         ///< per bill, written to the log
};

/// Enters bills with editable recordsets, one for the header and one for its lines; billsOfTransaction bills share a
/// transaction.
double EnterByRecordsets(const std::string& path, const std::vector<NewBill>& bills, int billsOfTransaction);
/// Enters bills with two statements that are prepared once.
Entered EnterByHand(const std::string& path, const std::vector<NewBill>& bills, int billsOfTransaction);

}  // namespace kpTables::bench
