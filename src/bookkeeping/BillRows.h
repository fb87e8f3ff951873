// The rows of a bill in its two tables.
#pragma once

#include <cstdint>

#include "bookkeeping/BillKinds.h"
#include "kpTables/bookkeeping/StoredBill.h"

namespace kpTables::bookkeeping {

const BillKind& TablesOf(BillFamily family) noexcept;

/// Adds header and lines; answers the new id. bill.id is not used.
std::int32_t AddBillRows(Connection& book, const StoredBill& bill);
/// Writes the header of an existing bill, but for its audit.
void WriteBillHeader(Connection& book, const StoredBill& bill);
/// Puts other lines in the place of an existing bill's.
void ReplaceBillLines(Connection& book, const StoredBill& bill);
/// Removes header and lines by statements; for cost bills, which CTables::Del_单据 does not know.
void RemoveCostBill(Connection& book, std::int32_t id);

}  // namespace kpTables::bookkeeping
