// Entering bills: all or none.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kpTables/Connection.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/NewBill.h"
#include "kpTables/bookkeeping/StoredBill.h"

namespace kpTables::bookkeeping {

struct EntryOptions {
    Date today = {};                  ///< 录入日期
    bool allowNegativeStock = false;  ///< enter bills that take out more than there is
    bool returns = false;             ///< allow lines with negative quantities: goods that come back
};

/// What is wrong with a bill.
struct BillFault {
    std::string bill = {};    ///< NewBill::key
    std::int64_t row = 0;     ///< NewBillLine::row; 0: none
    std::string column = {};  ///< of a sheet; "": none
    std::string reason;
    bool isStock =
        false;  ///< there is not enough of a product; EntryOptions::allowNegativeStock enters it all the same
};

/// Error 5 with everything that is wrong; nothing was entered.
class BillsRefused : public Error {
public:
    explicit BillsRefused(std::vector<BillFault> faults);
    const std::vector<BillFault>& Faults() const noexcept { return faults_; }

private:
    std::vector<BillFault> faults_;
};

struct EnteredBill {
    std::string key = {};          ///< NewBill::key
    std::int32_t id = 0;           ///< of a transfer, of the outbound half
    std::int32_t counterpart = 0;  ///< of a transfer, the inbound half
    StoredBill bill = {};          ///< of a transfer, the outbound half
};

/// Enters bills in their order, in one transaction, and answers them in this order. Raises BillsRefused with all that
/// is wrong: a closed month or a date outside the book's year, an unknown id, no or negative quantities, figures that
/// do not fit together, a number that its kind and month have already, more taken out than there is on that day or on
/// a later one.
std::vector<EnteredBill> EnterBills(const ConnectionPtr& book, const std::vector<NewBill>& bills,
                                    const EntryOptions& options);

}  // namespace kpTables::bookkeeping
