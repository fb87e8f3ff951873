// What is to be stored in a master row: the columns, and values of their types.
#pragma once

#include <string>
#include <vector>

#include "bookkeeping/MasterTables.h"
#include "kpTables/bookkeeping/MasterEntry.h"

namespace kpTables::bookkeeping {

/// The values with the columns' own names and types, in the order given; names and codes without blanks around.
/// Refuses unknown columns, columns given twice, the id, a warehouse's closing state, and values that do not fit.
ColumnValues ReadMasterValues(const ConnectionPtr& book, const MasterTable& table, const ColumnValues& values);

}  // namespace kpTables::bookkeeping
