// Changing, removing and auditing bills.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/bookkeeping/BillEntry.h"

namespace kpTables::bookkeeping {

/// What is to be another; nothing stays as it is.
struct BillChanges {
    std::optional<Date> date = {};
    std::optional<std::int32_t> warehouse = {};  ///< of a transfer, of the half that is changed
    std::optional<std::int32_t> partner = {};
    std::optional<std::int32_t> project = {};
    std::optional<std::string> type = {};
    std::optional<std::string> subtype = {};
    std::optional<std::string> number = {};
    std::optional<std::string> remarks = {};
    std::optional<std::vector<NewBillLine>> lines = {};  ///< instead of all lines
};

/// Which bills were changed.
struct Corrected {
    StoredBill bill;               ///< as it is now; of a removed one, as it was
    std::int32_t counterpart = 0;  ///< the other half of a transfer, which was changed with it; 0: none
};

// Each in one transaction, with both halves of a transfer. Raises BillsRefused and changes nothing where a month is
// closed, the bill is audited, or stock would go below zero.

/// Changes fields and lines. Both halves of a transfer keep the same date, number, remarks and lines.
Corrected EditBill(const ConnectionPtr& book, BillFamily family, std::int32_t id, const BillChanges& changes,
                   const EntryOptions& options);

/// Removes a bill and its lines (CTables::Del_单据).
Corrected RemoveBill(const ConnectionPtr& book, BillFamily family, std::int32_t id, const EntryOptions& options);

/// Stamps an auditor and a date on a bill (CTables::BillAdulting); refused when it is audited already. Error 5 for a
/// cost bill, which has no auditor.
Corrected AuditBill(const ConnectionPtr& book, BillFamily family, std::int32_t id, const std::string& auditor,
                    Date date);
/// Takes the auditor back, so that the bill can be changed; refused when it is not audited.
Corrected UndoAudit(const ConnectionPtr& book, BillFamily family, std::int32_t id);

}  // namespace kpTables::bookkeeping
