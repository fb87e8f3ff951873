// Books to work on.
#pragma once

#include <string>

#include "faults/Workload.h"

namespace kpTables::faults {

/// A book b.kpbook with rows 1, 2, 3, 5 and 7 in almost every table; bills and balances belong to warehouse 2 and March
/// 2004.
FolderPtr SmallBook();
/// The same with 400 products and 2,000 lines of bills.
FolderPtr LargeBook();

/// A book b.kpbook of the earliest format.
FolderPtr OldBook();

/// The folder after a command, which must succeed.
FolderPtr After(const FolderPtr& before, const std::vector<std::string>& words, const std::string& input = {});
/// A line of a batch that runs a statement.
std::string ExecuteLine(const std::string& statement);

}  // namespace kpTables::faults
