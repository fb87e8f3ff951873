// Writes the sample as one CSV file per table.
#pragma once

#include <filesystem>
#include <vector>

#include "Firm.h"
#include "Haulage.h"
#include "Trade.h"

namespace kpTables::sample {

/// Warehouses, partners, projects, people, products, operators, options and the book's own information.
void WriteMasterTables(const std::filesystem::path& folder, const Firm& firm);

/// Opening balances, bills, stocktakes, work orders and pay.
void WriteMovementTables(const std::filesystem::path& folder, const Year& year, const std::vector<WorkOrder>& orders,
                         const std::vector<Pay>& pays);

}  // namespace kpTables::sample
