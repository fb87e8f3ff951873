// Digests of the component's rows and of a statement's, computed in the same way.
#pragma once

#include <string_view>
#include <vector>

#include "RawDatabase.h"
#include "kpTables/Recordset.h"

namespace kpTables::bench {

/// kinds has a letter for each column: k for a key or a text, d for a date, q for a number, m for money, which a book
/// stores in ten-thousandths. Throws when the number of columns differs.
using ColumnKinds = std::string_view;

std::vector<double> DigestOf(Recordset& rows, ColumnKinds kinds, bool ordered);
std::vector<double> DigestOf(RawStatement& rows, ColumnKinds kinds, bool ordered);

}  // namespace kpTables::bench
