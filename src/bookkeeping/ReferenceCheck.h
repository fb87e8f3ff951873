// Rows that should refer to other rows.
#pragma once

#include <vector>

#include "kpTables/bookkeeping/Check.h"

namespace kpTables::bookkeeping {

/// Lines without a header and headers without lines.
void CheckBillParts(Connection& book, std::vector<Finding>& findings);
/// Ids without a row in the table of the warehouses, products, partners or projects.
void CheckMasterIds(Connection& book, std::vector<Finding>& findings);

}  // namespace kpTables::bookkeeping
