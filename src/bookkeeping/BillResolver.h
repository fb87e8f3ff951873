// A bill as entered, made into the bill that is stored.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "bookkeeping/CheckedTables.h"
#include "kpTables/bookkeeping/BillEntry.h"
#include "kpTables/bookkeeping/ClosedMonths.h"

namespace kpTables::bookkeeping {

/// Checks bills and works out what is not given. Make it inside the transaction in which they are stored.
class BillResolver {
public:
    BillResolver(const ConnectionPtr& book, const EntryOptions& options);

    /// The bill as it is stored, without id and number; of a transfer, the outbound half. faults gets all that is
    /// wrong; nothing then.
    std::optional<StoredBill> Resolve(const NewBill& bill, std::vector<BillFault>& faults);
    /// Puts what a changed bill says into the stored one, but for its warehouse; its lines stay where it has none.
    void Change(StoredBill& stored, const NewBill& bill, std::vector<BillFault>& faults);

    /// Why a bill may not be stored in this warehouse with this date; "" when it may.
    std::string RefusalOfDay(std::int32_t warehouse, Date date) const;
    /// Why a stored bill may not be changed or removed; "" when it may.
    std::string RefusalOfMonth(std::int32_t warehouse, std::int32_t month) const;

    /// "东库"; the id where the warehouse has no name.
    std::string WarehouseName(std::int32_t id);
    /// "01001 水泥"
    std::string ProductName(std::int32_t id);

private:
    struct Product {
        bool isKnown = false;
        std::string name;  ///< number and name
        std::map<std::string, double> figures;
    };

    Variant ProductValue(std::int32_t id, const std::string& column);
    const Product& ProductOf(std::int32_t id);
    double ProductFigure(std::int32_t id, const std::string& column);
    void CheckHeader(const NewBill& bill, std::vector<BillFault>& faults);
    void CheckWarehouse(const NewBill& bill, std::int32_t id, const std::string& column,
                        std::vector<BillFault>& faults);
    std::vector<StoredBillLine> LinesOf(const NewBill& bill, const std::string& type, std::vector<BillFault>& faults);
    StoredBillLine LineOf(const NewBill& bill, const NewBillLine& line, const std::string& type);
    GivenAmounts AmountsOf(const NewBill& bill, const NewBillLine& line);
    double RateOf(const NewBill& bill, const NewBillLine& line, const std::string& type);

    ConnectionPtr book_;
    CheckedTables tables_;
    bool returns_;
    ClosedMonths closed_;
    std::int32_t year_;        ///< the book's; 0: not known yet
    std::int32_t firstMonth_;  ///< of that year
    std::map<std::int32_t, Product> products_;
    std::map<std::int32_t, std::string> warehouses_;
};

}  // namespace kpTables::bookkeeping
