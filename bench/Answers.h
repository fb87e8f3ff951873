// The rows that the component answers and those of a statement, boiled down alike.
#pragma once

#include <string_view>
#include <vector>

#include "RawDatabase.h"
#include "kpTables/Recordset.h"

namespace kpTables::bench {

/// What each column is, a letter each: k a key or a text, d a date, q a number, m money, which a book counts in
/// ten-thousandths. Throws where there are more or fewer columns.
using ColumnKinds = std::string_view;

std::vector<double> DigestOf(Recordset& rows, ColumnKinds kinds, bool ordered);
std::vector<double> DigestOf(RawStatement& rows, ColumnKinds kinds, bool ordered);

}  // namespace kpTables::bench
