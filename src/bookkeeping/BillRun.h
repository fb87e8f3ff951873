// Bills that are entered one after the other in one transaction.
#pragma once

#include <vector>

#include "bookkeeping/BillResolver.h"
#include "bookkeeping/StockMoves.h"

namespace kpTables::bookkeeping {

/// Make it inside a transaction, which is committed only after Finish.
class BillRun {
public:
    BillRun(const ConnectionPtr& book, const EntryOptions& options);

    /// Faults of what the bills were read from.
    std::vector<BillFault>& Faults() noexcept { return faults_; }
    /// Writes a bill, unless something is wrong with it: that is kept for Finish.
    void Enter(const NewBill& bill);
    /// Checks the stock and answers the bills; raises BillsRefused when anything is wrong.
    std::vector<EnteredBill> Finish();

private:
    ConnectionPtr book_;
    EntryOptions options_;
    BillResolver resolver_;
    StockMoves moves_;
    std::vector<BillFault> faults_;
    std::vector<EnteredBill> entered_;
};

}  // namespace kpTables::bookkeeping
